#pragma once

#include <tuple>

#include "contracts/DataEngineExport.h"
#include "variables/DDKey.h"

/// One variable at one position of a batch of queries over several devices: a sortable triple of
/// device index, query index and variable. What the indices count from is the caller's.
///
/// A move is a copy: the source keeps its variable.
///
/// Thread rule: any number of threads may read an object while none writes it.
class DATAENGINE_EXPORT CTimePointIndex {
  public:
    /// A position that is still to be set, with the empty key.
    CTimePointIndex() = default;

    /// One variable at one position; `var` is copied.
    CTimePointIndex(int devIndex, int queryIndex, const DDKey& var)
        : devIndex_(devIndex), queryIndex_(queryIndex), var_(var) {}
    /// Copies all three. @{
    CTimePointIndex(const CTimePointIndex&) = default;
    CTimePointIndex& operator=(const CTimePointIndex&) = default;
    /// @}

    /// Orders by device index, then query index, both signed, then variable.
    bool operator<(const CTimePointIndex& other) const {
        return std::tie(devIndex_, queryIndex_, var_) <
               std::tie(other.devIndex_, other.queryIndex_, other.var_);
    }

    /// The index of the device. Set it before it is read. @{
    int GetDevIndex() const { return devIndex_; }
    void SetDevIndex(int devIndex) { devIndex_ = devIndex; }
    /// @}

    /// The index of the query. Set it before it is read. @{
    int GetQueryIndex() const { return queryIndex_; }
    void SetQueryIndex(int queryIndex) { queryIndex_ = queryIndex; }
    /// @}

    /// The variable; the getter gives a copy. @{
    DDKey GetVar() const { return var_; }
    void SetVar(const DDKey& var) { var_ = var; }
    /// @}

  private:
    int devIndex_ = 0;
    int queryIndex_ = 0;
    DDKey var_;
};
