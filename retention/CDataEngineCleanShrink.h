#pragma once

#include "contracts/IJsonSerialize.h"

/// The rule by which the store thins out old data: for how many months and how many pieces it
/// keeps, and whether it is in force. Only a load fills it, and a save writes nothing.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDataEngineCleanShrink : public IJsonSerialize {
  public:
    /// A rule that is not in force, with zeros.
    CDataEngineCleanShrink() = default;
    /// Copies every field; a move is a copy. @{
    CDataEngineCleanShrink(const CDataEngineCleanShrink&) = default;
    CDataEngineCleanShrink& operator=(const CDataEngineCleanShrink&) = default;
    /// @}

    /// Whether the rule is in force.
    bool GetChecked() const { return checked_; }
    /// For how many months data is kept.
    int GetKeepMonth() const { return keepMonth_; }
    /// How many pieces of data are kept.
    int GetKeepCount() const { return keepCount_; }

    /// Reads "checked", "keepMonth" and "keepCount".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Leaves `target` as it is.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    bool checked_ = false;
    int keepMonth_ = 0;
    int keepCount_ = 0;
};
