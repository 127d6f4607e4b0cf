#pragma once

#include "contracts/IJsonSerialize.h"

/// The rule by which the store removes old data: for how many months it keeps it, and whether the
/// rule is in force. Only a load fills it, and a save writes nothing.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDataEngineCleanRemove : public IJsonSerialize {
  public:
    /// A rule that is not in force, with zeros.
    CDataEngineCleanRemove() = default;
    /// Copies every field; a move is a copy. @{
    CDataEngineCleanRemove(const CDataEngineCleanRemove&) = default;
    CDataEngineCleanRemove& operator=(const CDataEngineCleanRemove&) = default;
    /// @}

    /// Whether the rule is in force.
    bool GetChecked() const { return checked_; }
    /// For how many months data is kept.
    int GetKeepMonth() const { return keepMonth_; }

    /// Reads "checked" and "keepMonth".
    bool LoadFromJson(const vxJson::Value& source) override;
    /// Leaves `target` as it is.
    bool SaveToJson(vxJson::Value& target) const override;

  private:
    bool checked_ = false;
    int keepMonth_ = 0;
};
