#pragma once

#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// A class with a JSON form, as CheckTransfer sees it: its fields are a JSON object by name.
struct TransferClass {
    /// The fields after loading the documents one by one; "stopped" is true if a load threw Error.
    std::function<vxJson::Value(const std::vector<vxJson::Value>&)> load;
    /// `target` after saving an object that loaded `document`; unchanged if the class has no save.
    std::function<vxJson::Value(const vxJson::Value& document, vxJson::Value target)> save;
    /// The fields left in an object that loaded `document` and was moved from.
    std::function<vxJson::Value(const vxJson::Value& document)> moveFrom;
};

/// Checks loading, saving, moving and wrong kinds of `classes`, one after the other, against the
/// blocks of the table `file`:
///
///     class | NAME
///     FIELD | read as | stale | fresh | saved | loaded | cleared | moved
///
/// The fields are in the order in which they are loaded. `read as` is a conversion (text, int,
/// bool, time, bytes), value for what never stops a load, numbers for an array of them, or - for
/// what is in no document. `saved` is yes, - or whole, which replaces all of an old entry. The last
/// three are the field after loading the stale and the fresh document, after the stale and an empty
/// one, and in a moved-from object after the fresh one; = stands for the fresh value.
void CheckTransfer(const std::string& file, const std::vector<TransferClass>& classes);

/// A JSON object of these members.
inline vxJson::Value Object(std::initializer_list<std::pair<const char*, vxJson::Value>> members) {
    vxJson::Value object;
    for (const auto& [key, value] : members) object[key] = value;
    return object;
}

/// `fields` shows an object; `prepare` gives values to fields that no document reaches.
template <typename T>
TransferClass Transfer(
    vxJson::Value (*fields)(const T&), void (*prepare)(T&) = [](T&) {}) {
    using Documents = std::vector<vxJson::Value>;
    const auto load = [=](T& object, const Documents& documents) {
        prepare(object);
        bool stopped = false;
        try {
            for (const auto& document : documents) EXPECT_TRUE(object.LoadFromJson(document));
        } catch (const vxJson::Error&) {
            stopped = true;
        }
        vxJson::Value shown = fields(object);
        shown["stopped"] = stopped;
        return shown;
    };
    TransferClass result;
    result.load = [=](const Documents& documents) {
        T object;
        return load(object, documents);
    };
    result.save = [=](const vxJson::Value& document, vxJson::Value target) {
        if constexpr (std::is_polymorphic_v<T>) {
            T object;
            load(object, {document});
            EXPECT_TRUE(object.SaveToJson(target));
        }
        return target;
    };
    result.moveFrom = [=](const vxJson::Value& document) {
        T source;
        load(source, {document});
        const vxJson::Value before = fields(source);
        T built(std::move(source));
        EXPECT_EQ(fields(built), before);
        T assigned;
        assigned = std::move(built);
        EXPECT_EQ(fields(built), fields(source));
        T& self = assigned;
        if constexpr (std::is_copy_constructible_v<T>) assigned = std::move(self);
        EXPECT_EQ(fields(assigned), before);
        vxJson::Value after = fields(source);
        source = T();  // a moved-from object can be assigned to
        load(source, {document});
        EXPECT_EQ(fields(source), before);
        return after;
    };
    return result;
}
