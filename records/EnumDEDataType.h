#pragma once

/// The type of a device data record. CDEDataBase::TypeInt2Str returns its text.
///
/// The underlying type is fixed, so that a number without an enumerator is a legal value; its text
/// is "none".
enum EnumDEDataType : int {
    DEDataTypeNone = 0,       ///< Unspecified; the type of a new record.
    DEDataTypeConfig = 1,     ///< A configuration file.
    DEDataTypeCmd = 2,        ///< The output of a command.
    DEDataTypeSysTable = 3,   ///< A system table; its data checksum is set from outside.
    DEDataTypeNctTable = 4,   ///< A configured table; its data checksum is set from outside.
    DEDataTypeParser = 5,     ///< The result of a parser.
    DEDataTypePingTrace = 6,  ///< The result of a ping or a trace.
    DEDataTypeRaw = 7,        ///< Unprocessed data.
};
