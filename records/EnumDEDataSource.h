#pragma once

/// Where a record's data came from. The numbers are the caller's: the library stores and returns
/// any of them, and gives a meaning only to the default. The underlying type is fixed, so every
/// 32-bit number is a legal value.
enum EnumDEDataSource : int {
    DEDataSourceUnset = -1,  ///< The source of a new record.
};
