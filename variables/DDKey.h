#pragma once

#include <string>

#include "contracts/DataEngineExport.h"

class CDEStructureDataHelper;

/// Names one variable of one parser: the parser's path and the variable's full name. A table
/// column is named by table name, '.', column name. Both are free text that nothing inspects; an
/// empty parser path is a path like any other.
///
/// The key type of every variable map. It has an order and neither an equality nor a setter: two
/// keys are equal when neither is less, and a key changes only by assignment. A move is a copy, so
/// a key once in hand never turns empty.
///
/// Thread rule: an object belongs to one thread at a time; any number may read it while none
/// writes.
class DATAENGINE_EXPORT DDKey {
  public:
    /// Two empty texts.
    DDKey() = default;

    /// Copies both texts.
    DDKey(const std::string& parserPath, const std::string& varFullName)
        : parserPath_(parserPath), varFullName_(varFullName) {}
    /// Copies both texts. @{
    DDKey(const DDKey&) = default;
    DDKey& operator=(const DDKey&) = default;
    /// @}

    /// Orders by parser path and, where these are equal, by full name; both as unsigned bytes, a
    /// prefix before the longer text.
    bool operator<(const DDKey& other) const {
        const int order = parserPath_.compare(other.parserPath_);
        return order != 0 ? order < 0 : varFullName_ < other.varFullName_;
    }

    /// A copy of the path of the parser.
    std::string GetParserPath() const { return parserPath_; }
    /// A copy of the full name of the variable in that parser.
    std::string GetVarFullName() const { return varFullName_; }

  private:
    // Walks maps of keys once per item of a document, and reads both texts in place.
    friend class CDEStructureDataHelper;

    std::string parserPath_;
    std::string varFullName_;
};
