#pragma once

#include "contracts/detail/rapidjson/RawValues.h"
#include "structure/PackedTable.h"
#include "structure/detail/PackedBytes.h"

namespace dataengine::detail {

/// Decodes the next packed value into `column.values` and `column.isNull`. The bytes then begin
/// after it.
///
/// An array of scalars of one kind and nils is read in one loop into its vector. For everything
/// else DecodeValue decides, whose result is then copied if it holds strings only: the text of
/// bins.
///
/// Throws as DecodeValue does.
void DecodeColumn(PackedBytes& bytes, JsonPool& pool, PackedColumn& column);

}  // namespace dataengine::detail
