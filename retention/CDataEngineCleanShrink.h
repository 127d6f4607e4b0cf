#pragma once

#include "contracts/IJsonSerialize.h"

/// The rule by which the store thins out old data: whether the rule is in force, how many months
/// and how many units of data it keeps. Only a load fills the rule; a save writes nothing.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDataEngineCleanShrink : public IJsonSerialize {
  public:
    /// Constructs a rule that is not in force, with zeros.
    CDataEngineCleanShrink() = default;
    /// Copies every field. A move copies, so the source keeps them. @{
    CDataEngineCleanShrink(const CDataEngineCleanShrink&) = default;
    CDataEngineCleanShrink& operator=(const CDataEngineCleanShrink&) = default;
    /// @}

    /// Returns whether the rule is in force.
    bool GetChecked() const { return checked_; }
    /// Returns the number of months for which data is kept.
    int GetKeepMonth() const { return keepMonth_; }
    /// Returns the number of units of data that are kept.
    int GetKeepCount() const { return keepCount_; }

    /// Reads "checked", "keepMonth" and "keepCount".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Leaves `target` unchanged.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    bool checked_ = false;
    int keepMonth_ = 0;
    int keepCount_ = 0;
};
