#pragma once

#include "contracts/IJsonSerialize.h"

/// The rule by which the store removes old data: whether the rule is in force and how many months
/// of data it keeps. Only a load fills the rule; a save writes nothing.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDataEngineCleanRemove : public IJsonSerialize {
  public:
    /// Constructs a rule that is not in force, with zeros.
    CDataEngineCleanRemove() = default;
    /// Copies every field. A move copies, so the source keeps them. @{
    CDataEngineCleanRemove(const CDataEngineCleanRemove&) = default;
    CDataEngineCleanRemove& operator=(const CDataEngineCleanRemove&) = default;
    /// @}

    /// Returns whether the rule is in force.
    bool GetChecked() const { return checked_; }
    /// Returns the number of months for which data is kept.
    int GetKeepMonth() const { return keepMonth_; }

    /// Reads "checked" and "keepMonth".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Leaves `target` unchanged.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    bool checked_ = false;
    int keepMonth_ = 0;
};
