#pragma once

#include <istream>
#include <map>
#include <string>
#include <vector>

// Just the operations of a JSON value that the data engine calls. One that is missing here is one
// that a platform's own utility library need not have. Plain and slow: it exists to be linked.
namespace vxJson {

enum class ValueType : int {};  // null is 0, binary is 110; the other numbers are nobody's business

class ValueIterator;
class ValueConstIterator;

class Value {
  public:
    Value(ValueType, bool) {}
    Value(const Value&) = default;
    Value(const std::string& bytes, ValueType) : kind_(Kind::binary), text_(bytes) {}
    Value(const char* bytes, int length)
        : kind_(Kind::binary), text_(bytes, static_cast<std::size_t>(length)) {}
    Value(int number) : Value(Kind::number, number) {}
    Value(unsigned long long time, bool) : Value(Kind::time, static_cast<long long>(time)) {}
    ~Value() = default;

    Value& operator=(const Value&) = default;
    Value& operator=(const std::string& text) { return *this = Value(Kind::text, 0, text); }
    Value& operator=(int number) { return *this = Value(number); }
    Value& operator=(long long number) { return *this = Value(Kind::number, number); }
    Value& operator=(unsigned long long number) { return *this = static_cast<long long>(number); }

    Value& operator[](const char* key) { return (*this)[std::string(key)]; }
    Value& operator[](const std::string& key) {
        if (isNull()) kind_ = Kind::object;
        return members_.try_emplace(key, ValueType(0), false).first->second;
    }
    const Value& operator[](const char* key) const { return (*this)[std::string(key)]; }
    const Value& operator[](const std::string& key) const {
        const auto found = members_.find(key);
        return found == members_.end() ? Null() : found->second;
    }
    const Value& operator[](int index) const { return elements_.at(static_cast<unsigned>(index)); }

    std::string asString() const { return text_; }
    int asInt() const { return static_cast<int>(number_); }
    long long asInt64() const { return number_; }
    bool asBool() const { return number_ != 0; }
    long long asTime() const { return number_; }
    const std::string& asBinary() const { return text_; }

    bool isNull() const { return kind_ == Kind::null; }
    bool isString() const { return kind_ == Kind::text; }
    bool isArray() const { return kind_ == Kind::array; }
    bool isObject() const { return kind_ == Kind::object; }
    bool empty() const {
        return isNull() || ((isArray() || isObject()) && elements_.empty() && members_.empty());
    }
    unsigned size() const { return static_cast<unsigned>(elements_.size()); }

    std::string toString(bool flag) const;
    std::string toStyledString() const;
    bool operator<(const Value& other) const { return toString(false) < other.toString(false); }

    Value& append(const Value& element) {
        kind_ = Kind::array;
        return elements_.emplace_back(element);
    }
    Value* append(Value* element) {
        append(*element);
        delete element;
        return &elements_.back();
    }

    ValueIterator begin();
    ValueIterator end();
    ValueConstIterator begin() const;
    ValueConstIterator end() const;

  private:
    enum class Kind { null, number, time, text, binary, array, object };

    friend struct Text;

    Value(Kind kind, long long number, const std::string& text = {})
        : kind_(kind), number_(number), text_(text) {}
    static const Value& Null() {
        static const Value null(ValueType(0), false);
        return null;
    }

    Kind kind_ = Kind::null;
    long long number_ = 0;
    std::string text_;
    std::vector<Value> elements_;
    std::map<std::string, Value> members_;
};

class ValueIteratorBase {
  public:
    Value& deref() const { return *place_; }
    void increment() { ++place_; }
    bool isEqual(const ValueIteratorBase& other) const { return place_ == other.place_; }

  protected:
    friend class Value;
    explicit ValueIteratorBase(const Value* place) : place_(const_cast<Value*>(place)) {}

  private:
    Value* place_;
};

class ValueIterator : public ValueIteratorBase {
    using ValueIteratorBase::ValueIteratorBase;
    friend class Value;
};

class ValueConstIterator : public ValueIteratorBase {
    using ValueIteratorBase::ValueIteratorBase;
    friend class Value;
};

inline ValueIterator Value::begin() {
    return ValueIterator(elements_.data());
}
inline ValueIterator Value::end() {
    return ValueIterator(elements_.data() + size());
}
inline ValueConstIterator Value::begin() const {
    return ValueConstIterator(elements_.data());
}
inline ValueConstIterator Value::end() const {
    return ValueConstIterator(elements_.data() + size());
}

class Reader {
  public:
    Reader() = default;
    ~Reader() = default;
    bool parse(std::istream& input, Value& root, bool flag);
};

}  // namespace vxJson
