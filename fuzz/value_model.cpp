// Changes a value and a model of maps and vectors by the same random operations, two bytes each or
// four for a key. Both must print and look up the same, and members must keep their addresses.

#include <VxUtil/vxJson.h>

#include <map>
#include <memory>

#include "fuzz/Fuzz.h"

namespace {

using vxJson::Value;

/// A number, or the members or elements of a container.
struct Model {
    enum class Kind { number, array, object };

    Kind kind = Kind::number;
    int number = 0;
    std::map<std::string, Model> members;
    std::vector<Model> elements;
};

std::string Text(const Model& model) {
    if (model.kind == Model::Kind::number) return std::to_string(model.number);
    const bool isArray = model.kind == Model::Kind::array;
    std::string text;
    for (const Model& element : model.elements) text += "," + Text(element);
    for (const auto& [key, member] : model.members) text += ",\"" + key + "\":" + Text(member);
    return (isArray ? "[" : "{") + text.substr(text.empty() ? 0 : 1) + (isArray ? "]" : "}");
}

/// Reads the operations; zeros after their end.
class Operations {
  public:
    Operations(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}
    bool AtEnd() const { return at_ == end_; }
    unsigned Byte() { return AtEnd() ? 0 : *at_++; }
    /// Returns whether another operation may enlarge the value much; a few may.
    bool MayEnlarge() { return enlargements_ > 0 && enlargements_-- > 0; }
    /// Returns a key of one of the lengths at which the comparison of keys changes.
    std::string Key() {
        static const std::size_t lengths[] = {0, 1, 2, 3, 4, 7, 8, 9, 15, 16, 17, 24};
        std::string key(lengths[Byte() % std::size(lengths)], 'a');
        const unsigned letter = Byte();
        if (!key.empty()) key[letter / 26 % key.size()] = static_cast<char>('a' + letter % 26);
        if (key.size() > 1) key.back() = static_cast<char>('a' + Byte() % 26);
        return key;
    }

  private:
    const std::uint8_t* at_;
    const std::uint8_t* const end_;
    int enlargements_ = 4;
};

void Assign(Value& value, Model& model, Model::Kind kind, int number) {
    model = Model{kind, kind == Model::Kind::number ? number : 0, {}, {}};
    if (kind == Model::Kind::number) {
        value = number;
    } else {
        value = Value(kind == Model::Kind::array ? vxJson::arrayKind : vxJson::objectKind, false);
    }
}

void ChangeMember(Value& value, Model& model, Operations& operations) {
    const std::string key = operations.Key();
    const auto found = model.members.find(key);
    const bool isMember = found != model.members.end();
    const Value* const address = isMember ? &std::as_const(value)[key] : nullptr;
    Require(value.isMember(key) == isMember, "isMember of " + key);
    if (operations.Byte() % 3 == 0) {
        Require(value.removeMember(key) == isMember, "removeMember of " + key);
        model.members.erase(key);
        return;
    }
    const int number = static_cast<int>(operations.Byte());
    Value& member = value[key];
    Require(!isMember || &member == address, "the address of " + key);
    Assign(member, model.members[key], static_cast<Model::Kind>(number % 3), number);
}

void AddRun(Value& value, Model& model, unsigned count) {
    for (unsigned i = 0; i < count; ++i) {
        const std::string key = "run" + std::to_string(i * 7919 % 1000);
        value[key] = static_cast<int>(i);
        model.members[key] = Model{Model::Kind::number, static_cast<int>(i), {}, {}};
    }
}

void Change(Value& value, Model& model, Operations& operations) {
    const unsigned operation = operations.Byte();
    const unsigned operand = operations.Byte();
    if (operation % 8 == 0) {
        Assign(value, model, static_cast<Model::Kind>(operand % 3), static_cast<int>(operand));
    } else if (operation % 8 == 1) {
        const Value copy = value;
        value = copy;
    } else if (model.kind == Model::Kind::array && operation % 8 < 5) {
        if (operations.MayEnlarge()) {
            value.append(value);
            model.elements.push_back(Model(model));
        } else {
            value.append(static_cast<int>(operand));
            model.elements.push_back(Model{Model::Kind::number, static_cast<int>(operand), {}, {}});
        }
    } else if (model.kind == Model::Kind::array && !model.elements.empty()) {
        const std::size_t index = operand % model.elements.size();
        Change(value[static_cast<int>(index)], model.elements[index], operations);
    } else if (model.kind == Model::Kind::object && operation % 8 == 2) {
        if (operations.MayEnlarge()) AddRun(value, model, 3 * operand);
    } else if (model.kind == Model::Kind::object && operation % 8 < 6) {
        ChangeMember(value, model, operations);
    } else if (model.kind == Model::Kind::object && !model.members.empty()) {
        auto& [key, member] = *std::next(model.members.begin(), operand % model.members.size());
        Change(value[key], member, operations);
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Operations operations(data, size);
    Value value(vxJson::objectKind, false);
    Model model{Model::Kind::object, 0, {}, {}};
    while (!operations.AtEnd()) Change(value, model, operations);
    Require(value.toString(false) == Text(model), value.toString(false) + " != " + Text(model));
    Require(Value(value) == value, "the copy of " + Text(model));
    if (!model.members.empty()) {
        auto expected = model.members.begin();
        for (const auto member : value.members())
            Require(member.key == (expected++)->first, "the walk over " + Text(model));
        Require(expected == model.members.end(), "the end of " + Text(model));
    }
    return 0;
}
