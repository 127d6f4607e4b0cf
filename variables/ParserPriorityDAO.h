#pragma once

#include <VxUtil/vxJson.h>

#include <cstdint>
#include <string>

#include "contracts/DataEngineExport.h"

/// A view of a stored parser priority document: the position of a parser in the order of a device
/// type. The library does not sort by it.
///
/// A missing "order" loads as 0, not as the largest value that a new object has. There is no save,
/// and a move copies, so the source keeps its content.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT ParserPriorityDAO {
  public:
    /// Constructs an empty path, time stamp 0 and the largest order.
    ParserPriorityDAO() = default;

    /// Copies every field. @{
    ParserPriorityDAO(const ParserPriorityDAO&) = default;
    ParserPriorityDAO& operator=(const ParserPriorityDAO&) = default;
    /// @}

    /// Reads "devType", "path", "ts" and "order", all numbers with asInt: of an integer or a time
    /// beyond 32 bits, such as a time stamp in milliseconds, the low 32 bits remain. Returns true.
    bool LoadFromJson(const vxJson::Value& source);

    /// Returns the device type. Initially 0.
    int GetDevType() const { return devType_; }

    /// The path of the parser. The getter returns a copy. @{
    std::string GetParserPath() const { return parserPath_; }
    void SetParserPath(const std::string& parserPath) { parserPath_ = parserPath; }
    /// @}

    /// The time stamp of the document. A load sets it to 32 bits, sign-extended. @{
    long long GetTimeStamp() const { return timeStamp_; }
    void SetTimeStamp(long long timeStamp) { timeStamp_ = timeStamp; }
    /// @}

    /// Returns the position of the parser in the order of its device type.
    std::uint32_t GetOrder() const { return order_; }

  private:
    int devType_ = 0;
    std::string parserPath_;
    long long timeStamp_ = 0;
    std::uint32_t order_ = 0xFFFFFFFF;
};
