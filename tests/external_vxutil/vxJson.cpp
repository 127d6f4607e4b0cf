// A plain implementation, recursive and slow; it exists to be linked, not to be used.
#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>
#include <rapidjson/istreamwrapper.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <stdexcept>

namespace vxJson {

struct Access {
    using Kind = Value::Kind;

    static void Load(const rapidjson::Value& source, Value& target) {
        if (source.IsBool()) {
            target.kind_ = Kind::boolean;
            target.number_ = source.GetBool() ? 1 : 0;
        } else if (source.IsInt64()) {
            target = static_cast<long long>(source.GetInt64());
        } else if (source.IsNumber()) {
            target.kind_ = Kind::real;
            target.real_ = source.GetDouble();
        } else if (source.IsString()) {
            target = std::string(source.GetString(), source.GetStringLength());
        } else if (source.IsArray()) {
            target.kind_ = Kind::array;
            for (const auto& element : source.GetArray()) {
                Load(element, target.append(Value(ValueType(0), false)));
            }
        } else if (source.IsObject()) {
            target.kind_ = Kind::object;
            for (const auto& member : source.GetObject()) {
                Load(member.value, target[std::string(member.name.GetString())]);
            }
        }
    }

    template <class Writer>
    static void Print(const Value& value, Writer& writer) {
        switch (value.kind_) {
            case Kind::null:
                writer.Null();
                break;
            case Kind::boolean:
                writer.Bool(value.number_ != 0);
                break;
            case Kind::number:
            case Kind::time:
                writer.Int64(value.number_);
                break;
            case Kind::real:
                writer.Double(value.real_);
                break;
            case Kind::text:
            case Kind::binary:
                writer.String(value.text_.data(), static_cast<unsigned>(value.text_.size()));
                break;
            case Kind::array:
                writer.StartArray();
                for (const auto& element : value.elements_) Print(*element, writer);
                writer.EndArray();
                break;
            case Kind::object:
                writer.StartObject();
                for (const auto& [name, member] : value.members_) {
                    writer.Key(name.data(), static_cast<unsigned>(name.size()));
                    Print(*member, writer);
                }
                writer.EndObject();
                break;
        }
    }

    static const Value& Null() {
        static const Value null(ValueType(0), false);
        return null;
    }
};

Value::Value(ValueType, bool) {}
Value::Value(const Value& other) {
    *this = other;
}
Value::Value(const std::string& bytes, ValueType) : kind_(Kind::binary), text_(bytes) {}
Value::Value(const char* bytes, int length)
    : kind_(Kind::binary), text_(bytes, static_cast<std::size_t>(length)) {}
Value::Value(int number) : kind_(Kind::number), number_(number) {}
Value::Value(unsigned long long time, bool)
    : kind_(Kind::time), number_(static_cast<long long>(time)) {}
Value::~Value() = default;

Value& Value::operator=(const Value& other) {
    if (this == &other) return *this;
    decltype(elements_) elements;
    for (const auto& element : other.elements_) {
        elements.push_back(std::make_unique<Value>(*element));
    }
    decltype(members_) members;
    for (const auto& [name, member] : other.members_) {
        members.emplace(name, std::make_unique<Value>(*member));
    }
    kind_ = other.kind_;
    number_ = other.number_;
    real_ = other.real_;
    text_ = other.text_;
    elements_ = std::move(elements);
    members_ = std::move(members);
    return *this;
}

Value& Value::operator=(const std::string& text) {
    *this = Value(text, ValueType(110));
    kind_ = Kind::text;
    return *this;
}

Value& Value::operator=(int number) {
    return *this = Value(number);
}

Value& Value::operator=(long long number) {
    *this = Value(static_cast<unsigned long long>(number), false);
    kind_ = Kind::number;
    return *this;
}

Value& Value::operator=(unsigned long long number) {
    return *this = static_cast<long long>(number);
}

Value& Value::operator[](const char* key) {
    return (*this)[std::string(key)];
}

Value& Value::operator[](const std::string& key) {
    if (isNull()) kind_ = Kind::object;
    if (!isObject()) throw std::runtime_error("not an object");
    auto& member = members_[key];
    if (!member) member = std::make_unique<Value>(ValueType(0), false);
    return *member;
}

const Value& Value::operator[](const char* key) const {
    return (*this)[std::string(key)];
}

const Value& Value::operator[](const std::string& key) const {
    const auto found = members_.find(key);
    return found == members_.end() ? Access::Null() : *found->second;
}

const Value& Value::operator[](int index) const {
    const auto position = static_cast<std::size_t>(index);
    return position < elements_.size() ? *elements_[position] : Access::Null();
}

std::string Value::asString() const {
    return text_;
}
int Value::asInt() const {
    return static_cast<int>(number_);
}
long long Value::asInt64() const {
    return number_;
}
bool Value::asBool() const {
    return number_ != 0;
}
long long Value::asTime() const {
    return number_;
}
const std::string& Value::asBinary() const {
    return text_;
}

bool Value::isNull() const {
    return kind_ == Kind::null;
}
bool Value::isString() const {
    return kind_ == Kind::text;
}
bool Value::isArray() const {
    return kind_ == Kind::array;
}
bool Value::isObject() const {
    return kind_ == Kind::object;
}
bool Value::empty() const {
    return isNull() || (isArray() && elements_.empty()) || (isObject() && members_.empty());
}
unsigned int Value::size() const {
    return static_cast<unsigned>(elements_.size());
}

std::string Value::toString(bool) const {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    Access::Print(*this, writer);
    return {buffer.GetString(), buffer.GetSize()};
}

std::string Value::toStyledString() const {
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
    Access::Print(*this, writer);
    return {buffer.GetString(), buffer.GetSize()};
}

bool Value::operator<(const Value& other) const {
    return toString(false) < other.toString(false);
}

Value& Value::append(const Value& element) {
    return *append(new Value(element));
}

Value* Value::append(Value* element) {
    std::unique_ptr<Value> owned(element);
    if (isNull()) kind_ = Kind::array;
    if (!isArray()) throw std::runtime_error("not an array");
    elements_.push_back(std::move(owned));
    return element;
}

ValueIterator Value::begin() {
    ValueIterator iterator;
    for (const auto& element : elements_) iterator.children_.push_back(element.get());
    for (const auto& entry : members_) iterator.children_.push_back(entry.second.get());
    return iterator;
}

ValueIterator Value::end() {
    ValueIterator iterator = begin();
    iterator.position_ = iterator.children_.size();
    return iterator;
}

ValueConstIterator Value::begin() const {
    ValueConstIterator iterator;
    static_cast<ValueIteratorBase&>(iterator) = const_cast<Value*>(this)->begin();
    return iterator;
}

ValueConstIterator Value::end() const {
    ValueConstIterator iterator;
    static_cast<ValueIteratorBase&>(iterator) = const_cast<Value*>(this)->end();
    return iterator;
}

Value& ValueIteratorBase::deref() const {
    return *children_[position_];
}
void ValueIteratorBase::increment() {
    ++position_;
}
bool ValueIteratorBase::isEqual(const ValueIteratorBase& other) const {
    return position_ == other.position_;
}

Reader::Reader() = default;
Reader::~Reader() = default;

bool Reader::parse(std::istream& input, Value& root, bool) {
    rapidjson::IStreamWrapper stream(input);
    rapidjson::Document document;
    document.ParseStream(stream);
    root = Value(ValueType(0), false);
    if (document.HasParseError()) return false;
    Access::Load(document, root);
    return true;
}

}  // namespace vxJson
