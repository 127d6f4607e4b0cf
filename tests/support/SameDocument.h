#pragma once

#include <gtest/gtest.h>
#include <rapidjson/document.h>

/// Compares two values as strictly as rapidjson can tell them apart: kinds, number flags, the
/// digits of doubles, string bytes with their final zero and lengths, element and member order,
/// repeated keys. A failure reports the first difference and the elements that lead to it,
/// innermost first. Recursive.
testing::AssertionResult SameDocument(const rapidjson::Value& left, const rapidjson::Value& right);
