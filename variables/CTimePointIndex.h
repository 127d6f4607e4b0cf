#pragma once

#include <tuple>

#include "contracts/DataEngineExport.h"
#include "variables/DDKey.h"

/// One variable at one position of a batch of queries over several devices: a sortable triple of
/// device index, query index and variable. The caller defines the indices.
///
/// A move copies: the source keeps its variable.
///
/// Thread safety: concurrent reads are safe.
class DATAENGINE_EXPORT CTimePointIndex {
  public:
    /// Constructs position 0 of device 0, with the empty key.
    CTimePointIndex() = default;

    /// Constructs the position of a variable. Copies `var`.
    CTimePointIndex(int devIndex, int queryIndex, const DDKey& var)
        : devIndex_(devIndex), queryIndex_(queryIndex), var_(var) {}
    /// Copies all three fields. @{
    CTimePointIndex(const CTimePointIndex&) = default;
    CTimePointIndex& operator=(const CTimePointIndex&) = default;
    /// @}

    /// Orders by device index, then query index, both signed, then variable.
    bool operator<(const CTimePointIndex& other) const {
        return std::tie(devIndex_, queryIndex_, var_) <
               std::tie(other.devIndex_, other.queryIndex_, other.var_);
    }

    /// The index of the device. Initially 0. @{
    int GetDevIndex() const { return devIndex_; }
    void SetDevIndex(int devIndex) { devIndex_ = devIndex; }
    /// @}

    /// The index of the query. Initially 0. @{
    int GetQueryIndex() const { return queryIndex_; }
    void SetQueryIndex(int queryIndex) { queryIndex_ = queryIndex; }
    /// @}

    /// The variable. The getter returns a copy. @{
    DDKey GetVar() const { return var_; }
    void SetVar(const DDKey& var) { var_ = var; }
    /// @}

  private:
    int devIndex_ = 0;
    int queryIndex_ = 0;
    DDKey var_;
};
