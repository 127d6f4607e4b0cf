#pragma once

#include <istream>
#include <nlohmann/json.hpp>
#include <string>

// The operations of a JSON value that the data engine may call, and no other: a call that is not
// declared here does not compile. Conversions never fail.
namespace vxJson {

enum class ValueType : int {};  // 0 is null, 110 is binary
class Value;

struct ValueIteratorBase {
    Value& deref() const { return *place; }
    void increment();
    bool isEqual(const ValueIteratorBase& other) const { return place == other.place; }
    Value* place;
};
struct ValueIterator : ValueIteratorBase {};
struct ValueConstIterator : ValueIteratorBase {};

// Elements and members are nlohmann::json objects, which have the layout of a Value.
class Value {
  public:
    Value(ValueType, bool) {}
    Value(const Value&) = default;
    Value(const std::string& bytes, ValueType) : json_(bytes) {}
    Value(const char* bytes, int length) : json_(std::string(bytes, bytes + length)) {}
    Value(int number) : json_(number) {}
    Value(unsigned long long time, bool) : json_(time) {}

    Value& operator=(const Value&) = default;
    Value& operator=(const std::string& text) { return json_ = text, *this; }
    Value& operator=(int number) { return json_ = number, *this; }
    Value& operator=(long long number) { return json_ = number, *this; }
    Value& operator=(unsigned long long number) { return json_ = number, *this; }

    Value& operator[](const char* key) { return Of(json_[key]); }
    Value& operator[](const std::string& key) { return Of(json_[key]); }
    const Value& operator[](const char* key) const { return (*this)[std::string(key)]; }
    const Value& operator[](const std::string& key) const {
        static const nlohmann::json null;
        return Of(json_.contains(key) ? json_[key] : null);
    }
    const Value& operator[](int index) const { return Of(json_.at(static_cast<unsigned>(index))); }

    std::string asString() const { return asBinary(); }
    const std::string& asBinary() const {
        static const std::string empty;
        return isString() ? json_.get_ref<const std::string&>() : empty;
    }
    int asInt() const { return static_cast<int>(asInt64()); }
    long long asInt64() const { return json_.is_number() ? json_.get<long long>() : 0; }
    long long asTime() const { return asInt64(); }
    bool asBool() const { return json_ == true; }

    bool isNull() const { return json_.is_null(); }
    bool isString() const { return json_.is_string(); }
    bool isArray() const { return json_.is_array(); }
    bool isObject() const { return json_.is_object(); }
    bool empty() const { return json_.empty(); }
    unsigned size() const { return isArray() ? static_cast<unsigned>(json_.size()) : 0; }

    std::string toString(bool) const { return json_.dump(); }
    std::string toStyledString() const { return json_.dump(4); }
    bool operator<(const Value& other) const { return json_ < other.json_; }

    Value& append(const Value& element) { return Of(json_.emplace_back(element.json_)); }
    Value* append(Value* element) { return &append(*std::unique_ptr<Value>(element)); }

    ValueIterator begin() { return {{Elements()}}; }
    ValueIterator end() { return {{Elements() + size()}}; }
    ValueConstIterator begin() const { return {{Elements()}}; }
    ValueConstIterator end() const { return {{Elements() + size()}}; }

  private:
    friend struct Reader;
    static Value& Of(const nlohmann::json& json) {
        return reinterpret_cast<Value&>(const_cast<nlohmann::json&>(json));
    }
    Value* Elements() const { return size() == 0 ? nullptr : &Of(json_[0]); }

    nlohmann::json json_;
};
static_assert(sizeof(Value) == sizeof(nlohmann::json));

inline void ValueIteratorBase::increment() {
    ++place;
}

struct Reader {
    bool parse(std::istream& input, Value& root, bool) {
        root.json_ = nlohmann::json::parse(input, nullptr, false);
        return !root.json_.is_discarded();
    }
};

}  // namespace vxJson
