#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <exception>

using vxJson::Value;

namespace {

/// Returns whether the results for missing entries are there.
bool HasEmptyResults() {
    Value array;
    array.append(1);
    const Value object(vxJson::objectKind, false);
    return object["k"].isNull() && object["k"].asBinary().empty() && array.begin().key().empty();
}

// Linked with the object files of the library, this object is created before anything in them, and
// destroyed after it.
const struct Early {
    ~Early() {
        if (!HasEmptyResults()) std::terminate();
    }
    const bool hasEmptyResults = HasEmptyResults();
} early;

TEST(StaticObjects, UseValuesBeforeMainAndAfterIt) {
    EXPECT_TRUE(early.hasEmptyResults);
}

}  // namespace
