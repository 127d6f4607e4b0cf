#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <sstream>

using vxJson::Value;

namespace {

// How many allocations still succeed; negative for all.
long long allocationsLeft = -1;

}  // namespace

// Not inlined, for g++ would then see new memory go to free and warn.
[[gnu::noinline]] void* operator new(std::size_t size) {
    if (allocationsLeft == 0) throw std::bad_alloc();
    if (allocationsLeft > 0) --allocationsLeft;
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

std::string Repeat(const std::string& text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) result += text;
    return result;
}

TEST(JsonMemory, BoundsDepthAlone) {
    constexpr std::size_t depth = 1000000;
    const std::string texts[] = {
        Repeat("[", depth) + Repeat("]", depth),
        Repeat("{\"k\":", depth) + "1" + Repeat("}", depth),
        Repeat("[0,{\"k\":", depth / 2) + "[]" + Repeat(",\"l\":0},1]", depth / 2),
    };
    for (const std::string& text : texts) {
        std::istringstream input(text);
        Value value;
        ASSERT_TRUE(vxJson::Reader().parse(input, value, true));
        Value copy = value;
        EXPECT_TRUE(copy == value);
        EXPECT_FALSE(copy < value);
        EXPECT_TRUE(copy.toString(false) == text);
        EXPECT_LT(copy.toStyledString().size(), 400 * depth);
        std::istringstream cut(text.substr(0, text.size() - 1));
        EXPECT_FALSE(vxJson::Reader().parse(cut, copy, true));
    }
}

// Lets one allocation after the other fail until `act` gets through; each time it must leave
// `target` as `expected` says. The sanitizers see to it that nothing leaks.
template <class Act>
void FailEachAllocation(Act act, const Value& before, const Value& failed) {
    for (long long count = 0; count < 10000; ++count) {
        Value target = before;
        bool done = false;
        allocationsLeft = count;
        try {
            act(target);
            done = true;
        } catch (const std::bad_alloc&) {
        }
        allocationsLeft = -1;
        if (done) {
            EXPECT_GT(count, 0);
            return;
        }
        ASSERT_TRUE(target == failed) << count << ": " << target;
    }
    FAIL() << "never done";
}

TEST(JsonMemory, ReportsExhaustion) {
    const std::string text =
        R"({"a":[1,[2,"a text that is too long to be held in place"],{"b":{"c":[[],{}]}}],)"
        R"("a key that is too long to be held in place":{"$binary":{"base64":"YQ==","subType":"00"}}})";
    std::istringstream input(text);
    Value value;
    ASSERT_TRUE(vxJson::Reader().parse(input, value, true));
    Value before;
    before["old"].append("content");
    FailEachAllocation([&](Value& target) { target = value; }, before, before);
    FailEachAllocation([&](Value& target) { target = target["old"]; }, before, before);
    FailEachAllocation([&](Value& target) { target.append(value); },
                       Value(vxJson::arrayKind, false), Value(vxJson::arrayKind, false));
    FailEachAllocation([&](Value&) { value.toString(false); }, Value(), Value());
    FailEachAllocation([&](Value&) { value.toStyledString(); }, Value(), Value());
    FailEachAllocation(
        [&](Value& target) {
            input.clear();
            input.seekg(0);
            vxJson::Reader().parse(input, target, true);
        },
        before, Value());
}

}  // namespace
