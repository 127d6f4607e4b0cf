#pragma once

/// The source of a record's data. The caller defines the numbers; the library stores and returns
/// them. The underlying type is fixed, so that every 32-bit number is a legal value.
enum EnumDEDataSource : int {
    DEDataSourceUnset = -1,  ///< The source of a new record.
};
