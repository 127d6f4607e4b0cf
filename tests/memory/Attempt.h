#pragma once

#include <gtest/gtest.h>

#include <new>

#include "tests/memory/Faults.h"

/// One try at an operation in which one allocation fails.
class Attempt {
  public:
    explicit Attempt(long failing) : failing_(failing) {}

    /// Runs `operation` and returns whether it got through. Where it did not, the allocation failed
    /// and std::bad_alloc came out; anything else that comes out fails the test.
    template <class Operation>
    bool Succeeds(Operation operation) {
        bool raised = false;
        Faults::Arm(failing_);
        try {
            operation();
        } catch (const std::bad_alloc&) {
            raised = true;
        } catch (...) {
            Faults::Disarm();
            throw;
        }
        struck_ = Faults::Disarm();
        EXPECT_EQ(raised, struck_)
            << "allocation " << failing_ << " failed and "
            << (raised ? "should not have been asked for" : "nobody said so");
        return !struck_;
    }

    /// Whether the allocation was asked for, and failed.
    bool Struck() const { return struck_; }

  private:
    long failing_;
    bool struck_ = false;
};

/// An operation by name: `run` makes its own inputs, gives the operation itself to the attempt,
/// looks at what is left, and uses it again.
struct Operation {
    const char* name;
    void (*run)(Attempt& attempt);
};

/// Runs an operation with its first, its second, ... allocation failing until it gets through.
inline void FailEveryAllocation(const Operation& operation) {
    SCOPED_TRACE(operation.name);
    for (long failing = 1;; ++failing) {
        Attempt attempt(failing);
        const long before = Faults::Live();
        operation.run(attempt);
        const long left = Faults::Live() - before;
        if (testing::Test::HasFailure()) {
            ADD_FAILURE() << "allocation " << failing << " failed";
            return;
        }
        ASSERT_EQ(left, 0) << "leaked after allocation " << failing << " failed";
        if (attempt.Struck()) continue;
        EXPECT_GT(failing, 1) << "the operation allocates nothing";
        return;
    }
}
