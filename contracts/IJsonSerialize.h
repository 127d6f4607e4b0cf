#pragma once

#include <VxUtil/vxJson.h>

#include "contracts/DataEngineExport.h"

/// The load and save interface of the classes with a JSON form.
///
/// A load reads its keys in a fixed order and replaces one field after the other; a missing key
/// loads as what a null value converts to. A save writes its keys in a fixed order and leaves the
/// other keys of its target alone. Every implementation in this library returns true on all paths;
/// what a conversion throws passes through and leaves the fields read before it with their new
/// values.
///
/// Thread rule: none of its own; an object belongs to one thread at a time.
class DATAENGINE_EXPORT IJsonSerialize {
  public:
    /// Objects may be deleted through this interface.
    virtual ~IJsonSerialize() = default;

    /// Replaces the object's fields by what `source` holds.
    virtual bool LoadFromJson(const vxJson::Value& source) = 0;

    /// Writes the object's fields into `target`, which is null or an object.
    virtual bool SaveToJson(vxJson::Value& target) const = 0;

  protected:
    /// For derived classes: the interface itself holds nothing. @{
    IJsonSerialize() = default;
    IJsonSerialize(const IJsonSerialize&) = default;
    IJsonSerialize(IJsonSerialize&&) = default;
    IJsonSerialize& operator=(const IJsonSerialize&) = default;
    IJsonSerialize& operator=(IJsonSerialize&&) = default;
    /// @}
};
