#pragma once

#include <gtest/gtest.h>

#include <string>

#include "structure/PackedFrameReader.h"

/// Opens and decodes a frame by `reader`, which was created with `selection`, and by
/// CDEStructureDataHelper. Succeeds if headers, results, classes of exceptions and documents are
/// the same.
testing::AssertionResult SameReading(dataengine::PackedFrameReader& reader,
                                     const std::string& frame, const vxJson::Value& offsets,
                                     const vxJson::Value& selection);
