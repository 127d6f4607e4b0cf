#pragma once

#include <VxUtil/vxJson.h>

#include "contracts/DataEngineExport.h"

/// The load and save interface of the classes with a JSON form.
///
/// A load reads its keys in a fixed order and replaces one field after the other; a missing key
/// loads like a null value. A save writes its keys in a fixed order and leaves the other keys of
/// its target unchanged. Every implementation in this library returns true on all paths. Exceptions
/// of conversions pass through; fields read before the failing key keep their new values.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT IJsonSerialize {
  public:
    /// Objects may be deleted through this interface.
    virtual ~IJsonSerialize() = default;

    /// Replaces the object's fields by those in `source`.
    virtual bool LoadFromJson(const vxJson::Value& source) = 0;

    /// Writes the object's fields into `target`, which is null or an object.
    virtual bool SaveToJson(vxJson::Value& target) const = 0;

  protected:
    /// For derived classes. The interface has no data. @{
    IJsonSerialize() = default;
    IJsonSerialize(const IJsonSerialize&) = default;
    IJsonSerialize(IJsonSerialize&&) = default;
    IJsonSerialize& operator=(const IJsonSerialize&) = default;
    IJsonSerialize& operator=(IJsonSerialize&&) = default;
    /// @}
};
