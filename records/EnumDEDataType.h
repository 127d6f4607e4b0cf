#pragma once

/// What a device data record holds. Its texts are those of CDEDataBase::TypeInt2Str.
///
/// The underlying type is fixed, so a number without an enumerator is a legal value; its text is
/// "none".
enum EnumDEDataType : int {
    DEDataTypeNone = 0,       ///< Not said; the type of a new record.
    DEDataTypeConfig = 1,     ///< A configuration file.
    DEDataTypeCmd = 2,        ///< The output of a command.
    DEDataTypeSysTable = 3,   ///< A system table; its data checksum is set from outside.
    DEDataTypeNctTable = 4,   ///< A configured table; its data checksum is set from outside.
    DEDataTypeParser = 5,     ///< The result of a parser.
    DEDataTypePingTrace = 6,  ///< The result of a ping or a trace.
    DEDataTypeRaw = 7,        ///< Data as it came.
};
