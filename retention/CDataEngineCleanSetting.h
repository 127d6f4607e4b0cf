#pragma once

#include "contracts/IJsonSerialize.h"
#include "retention/CDataEngineCleanRemove.h"
#include "retention/CDataEngineCleanShrink.h"

/// The clean-up settings of the store: a rule that thins out data and a rule that removes it. The
/// store does the clean-up. Only a load fills the settings; a save writes nothing.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDataEngineCleanSetting : public IJsonSerialize {
  public:
    /// Constructs two rules that are not in force, with zeros.
    CDataEngineCleanSetting() = default;
    /// Copies every field. A move copies, so the source keeps them. @{
    CDataEngineCleanSetting(const CDataEngineCleanSetting&) = default;
    CDataEngineCleanSetting& operator=(const CDataEngineCleanSetting&) = default;
    /// @}

    /// Returns the rule that thins out data, valid for the lifetime of the object.
    const CDataEngineCleanShrink& GetShrink() const { return shrink_; }
    /// Returns the rule that removes data, valid for the lifetime of the object.
    const CDataEngineCleanRemove& GetRemove() const { return remove_; }

    /// Reads "shrink" and "remove"; an absent one resets its rule.
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Leaves `target` unchanged.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    CDataEngineCleanShrink shrink_;
    CDataEngineCleanRemove remove_;
};
