#pragma once

#include <gtest/gtest.h>

#include <string>

#include "structure/PackedFrameReader.h"

/// Returns the value that a document holds for a column.
rapidjson::Value DocumentValue(const dataengine::PackedColumn& column,
                               rapidjson::Document::AllocatorType& pool);

/// Opens and decodes a frame by `reader`, which was created with `selection`, and by
/// CDEStructureDataHelper. Succeeds if headers, results, classes of exceptions and documents are
/// the same, and if the tables that the reader decodes into arrays hold the values of the document.
testing::AssertionResult SameReading(dataengine::PackedFrameReader& reader,
                                     const std::string& frame, const vxJson::Value& offsets,
                                     const vxJson::Value& selection);
