#pragma once

#include <string>

#include "contracts/DataEngineExport.h"

class CDEStructureDataHelper;

/// Names one variable of one parser by the parser's path and the variable's full name. The full
/// name of a table column is table name, '.', column name. Neither string is validated; an empty
/// parser path is an ordinary value.
///
/// The key type of every variable map. Two keys are equal if neither is less than the other; there
/// is no operator==. A key changes only by assignment, and a move copies, so the source of a move
/// stays a usable key.
///
/// Thread safety: concurrent reads are safe.
class DATAENGINE_EXPORT DDKey {
  public:
    /// Constructs two empty strings.
    DDKey() = default;

    /// Constructs a key from copies of both strings.
    DDKey(const std::string& parserPath, const std::string& varFullName)
        : parserPath_(parserPath), varFullName_(varFullName) {}
    /// Copies both strings. @{
    DDKey(const DDKey&) = default;
    DDKey& operator=(const DDKey&) = default;
    /// @}

    /// Orders by parser path, then by full name. Both compare as unsigned bytes, a prefix before
    /// the longer string.
    bool operator<(const DDKey& other) const {
        const int order = parserPath_.compare(other.parserPath_);
        return order != 0 ? order < 0 : varFullName_ < other.varFullName_;
    }

    /// Returns a copy of the path of the parser.
    std::string GetParserPath() const { return parserPath_; }
    /// Returns a copy of the full name of the variable.
    std::string GetVarFullName() const { return varFullName_; }

  private:
    // Reads both strings of every key of a map without copying them.
    friend class CDEStructureDataHelper;

    std::string parserPath_;
    std::string varFullName_;
};
