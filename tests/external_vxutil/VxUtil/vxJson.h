#pragma once

#include <istream>
#include <map>
#include <memory>
#include <string>
#include <vector>

// Just the operations of a JSON value that the data engine calls. An operation that is missing here
// is one that a platform's own utility library need not have.
namespace vxJson {

enum class ValueType : int {};  // null is 0, binary is 110; the other numbers are nobody's business

class ValueIterator;
class ValueConstIterator;

class Value {
  public:
    Value(ValueType type, bool flag);
    Value(const Value& other);
    Value(const std::string& bytes, ValueType type);
    Value(const char* bytes, int length);
    Value(int number);
    Value(unsigned long long time, bool flag);
    ~Value();

    Value& operator=(const Value& other);
    Value& operator=(const std::string& text);
    Value& operator=(int number);
    Value& operator=(long long number);
    Value& operator=(unsigned long long number);

    Value& operator[](const char* key);
    Value& operator[](const std::string& key);
    const Value& operator[](const char* key) const;
    const Value& operator[](const std::string& key) const;
    const Value& operator[](int index) const;

    std::string asString() const;
    int asInt() const;
    long long asInt64() const;
    bool asBool() const;
    long long asTime() const;
    const std::string& asBinary() const;

    bool isNull() const;
    bool isString() const;
    bool isArray() const;
    bool isObject() const;
    bool empty() const;
    unsigned int size() const;

    std::string toString(bool flag) const;
    std::string toStyledString() const;
    bool operator<(const Value& other) const;

    Value& append(const Value& element);
    Value* append(Value* element);

    ValueIterator begin();
    ValueIterator end();
    ValueConstIterator begin() const;
    ValueConstIterator end() const;

  private:
    enum class Kind { null, boolean, number, real, text, binary, time, array, object };

    friend class ValueIteratorBase;
    friend struct Access;

    Kind kind_ = Kind::null;
    long long number_ = 0;
    double real_ = 0;
    std::string text_;
    std::vector<std::unique_ptr<Value>> elements_;
    std::map<std::string, std::unique_ptr<Value>> members_;
};

class ValueIteratorBase {
  public:
    Value& deref() const;
    void increment();
    bool isEqual(const ValueIteratorBase& other) const;

  private:
    friend class Value;

    // Walks the children that the value had when the walk began.
    std::vector<Value*> children_;
    std::size_t position_ = 0;
};

class ValueIterator : public ValueIteratorBase {};
class ValueConstIterator : public ValueIteratorBase {};

class Reader {
  public:
    Reader();
    ~Reader();
    bool parse(std::istream& input, Value& root, bool flag);
};

}  // namespace vxJson
