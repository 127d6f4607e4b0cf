#pragma once

#include "contracts/IJsonSerialize.h"
#include "retention/CDataEngineCleanRemove.h"
#include "retention/CDataEngineCleanShrink.h"

/// The clean-up settings of the store: one rule that thins out and one that removes. The clean-up
/// itself is the store's work. Only a load fills the settings, and a save writes nothing.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDataEngineCleanSetting : public IJsonSerialize {
  public:
    /// Two rules that are not in force, with zeros.
    CDataEngineCleanSetting() = default;
    /// Copies every field; a move is a copy. @{
    CDataEngineCleanSetting(const CDataEngineCleanSetting&) = default;
    CDataEngineCleanSetting& operator=(const CDataEngineCleanSetting&) = default;
    /// @}

    /// The rule that thins out. The reference is into the object and shows later loads.
    const CDataEngineCleanShrink& GetShrink() const { return shrink_; }
    /// The rule that removes. The reference is into the object and shows later loads.
    const CDataEngineCleanRemove& GetRemove() const { return remove_; }

    /// Reads "shrink" and "remove"; an absent one resets its rule.
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Leaves `target` as it is.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    CDataEngineCleanShrink shrink_;
    CDataEngineCleanRemove remove_;
};
