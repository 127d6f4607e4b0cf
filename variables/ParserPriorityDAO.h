#pragma once

#include <VxUtil/vxJson.h>

#include <cstdint>
#include <string>

#include "contracts/DataEngineExport.h"

/// A view of one stored parser priority document: the place of one parser in the order of one
/// device type. Nothing in the library sorts by it.
///
/// A missing "order" loads as 0, not as the default's largest value. There is no save, and a move
/// is a copy.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT ParserPriorityDAO {
  public:
    /// An empty path, time stamp 0 and the largest place.
    ParserPriorityDAO() = default;

    /// Copies every field. @{
    ParserPriorityDAO(const ParserPriorityDAO&) = default;
    ParserPriorityDAO& operator=(const ParserPriorityDAO&) = default;
    /// @}

    /// Reads "devType", "path", "ts" and "order", all numbers as 32 bits. Returns true.
    bool LoadFromJson(const vxJson::Value& source);

    /// The device type. Load it before it is read.
    int GetDevType() const { return devType_; }

    /// The path of the parser; the getter gives a copy. @{
    std::string GetParserPath() const { return parserPath_; }
    void SetParserPath(const std::string& parserPath) { parserPath_ = parserPath; }
    /// @}

    /// The time stamp of the document; a load gives it 32 bits, sign-extended. @{
    long long GetTimeStamp() const { return timeStamp_; }
    void SetTimeStamp(long long timeStamp) { timeStamp_ = timeStamp; }
    /// @}

    /// The place of the parser in the order of its device type.
    std::uint32_t GetOrder() const { return order_; }

  private:
    int devType_ = 0;
    std::string parserPath_;
    long long timeStamp_ = 0;
    std::uint32_t order_ = 0xFFFFFFFF;
};
