#pragma once

#include <VxUtil/vxJson.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

/// Returns a JSON object of alternating names and values.
template <typename... T>
vxJson::Value Object(const T&... namesAndValues) {
    const vxJson::Value list[] = {namesAndValues...};
    vxJson::Value object;
    for (std::size_t i = 0; i < sizeof...(T); i += 2) object[list[i].asString()] = list[i + 1];
    return object;
}

/// Checks loading, saving and moving of a class with a JSON form, and loading values of wrong
/// kinds, against its block in the file classes.txt of the test:
///
///     class | NAME
///     FIELD | read as | stale | fresh | saved | loaded | cleared | moved
///
/// The fields are in the order in which they are loaded. `read as` is a conversion of kinds.txt,
/// value for what never stops a load, or - for what is in no document. `saved` is yes, - or whole,
/// which replaces all of an old entry. The last three are the field after loading the stale and the
/// fresh document, after the stale and an empty one, and in a moved-from object after the fresh
/// one; = stands for the fresh value.
template <typename T>
class Transfer {
  public:
    /// `show` returns the fields of an object by name, `prepare` sets those that are in no
    /// document.
    static void Check(
        const std::string& name, vxJson::Value (*show)(const T&), void (*prepare)(T&) = [](T&) {}) {
        SCOPED_TRACE(name);
        Transfer transfer;
        transfer.show_ = show;
        transfer.prepare_ = prepare;
        transfer.ReadTable(name);
        transfer.CheckLoads();
        transfer.CheckMoves();
        transfer.CheckKinds();
        if constexpr (std::is_polymorphic_v<T>) transfer.CheckSaves();
    }

  private:
    using Value = vxJson::Value;

    void ReadTable(const std::string& name) {
        bool found = false;
        for (const auto& row : RowsOf(TEST_DATA "/classes.txt")) {
            if (row[0] == "class") {
                found = row.at(1) == name;
            } else if (found) {
                rows_.push_back(row);
            }
        }
        ASSERT_FALSE(rows_.empty());
    }

    /// Returns the fields of one column by name.
    Value Column(std::size_t column) const {
        Value object;
        for (const auto& row : rows_) {
            const std::string& text = row.at(column);
            if (text != "-") object[row[0]] = Json(text == "=" ? row.at(3) : text);
        }
        return object;
    }

    /// `when` names the step in a failure.
    void ExpectFields(const std::string& when, const Value& shown, const Value& expected) const {
        for (const auto& row : rows_)
            EXPECT_EQ(shown[row[0]], expected[row[0]]) << row[0] << ' ' << when;
    }

    /// Loads the documents one by one. Returns whether all were loaded.
    bool Load(T& object, const std::vector<Value>& documents) const {
        prepare_(object);
        try {
            for (const Value& document : documents) EXPECT_TRUE(object.LoadFromJson(document));
        } catch (const vxJson::Error&) {
            return false;
        }
        return true;
    }

    Value Loaded(const std::vector<Value>& documents) const {
        T object;
        EXPECT_TRUE(Load(object, documents));
        return show_(object);
    }

    void CheckLoads() const {
        ExpectFields("after a second load", Loaded({Column(2), Column(3)}), Column(5));
        ExpectFields("after a load of {}", Loaded({Column(2), Json("{}")}), Column(6));
    }

    void CheckMoves() const {
        T source;
        Load(source, {Column(3)});
        const Value before = show_(source);
        T built(std::move(source));
        ExpectFields("of a move", show_(built), before);
        ExpectFields("moved from", show_(source), Column(7));
        source = std::move(built);
        ExpectFields("moved from by assignment", show_(built), Column(7));
        T& self = source;
        if constexpr (std::is_copy_constructible_v<T>) source = std::move(self);
        ExpectFields("of a move by assignment, to itself too", show_(source), before);
    }

    /// Expects a value of the wrong kind to stop the load: fields before it are new, the others
    /// old.
    void CheckKinds() const {
        Value expected = Loaded({Column(2)});
        for (const auto& row : rows_) {
            for (const auto& kind : RowsOf(TEST_DATA "/../support/kinds.txt")) {
                SCOPED_TRACE(row[0] + " is " + kind[0]);
                Value document = Column(3);
                document[row[0]] = Json(kind[0]);
                T object;
                const bool loads = Load(object, {Column(2), document});
                EXPECT_EQ(loads,
                          (" " + kind[1] + " ").find(" " + row[1] + " ") == std::string::npos);
                if (!loads) ExpectFields("after the error", show_(object), expected);
            }
            expected[row[0]] = Column(5)[row[0]];
        }
    }

    Value Saved(const Value& document, Value target) const {
        T object;
        Load(object, {document});
        EXPECT_TRUE(object.SaveToJson(target));
        return target;
    }

    void CheckSaves() const {
        const Value fresh = Column(3);
        Value target = Json(R"({"keep":1})");
        Value expected = target;
        for (const auto& row : rows_) {
            if (row[4] == "whole") target[row[0]]["old"] = 1;
            if (row[4] != "-") expected[row[0]] = fresh[row[0]];
        }
        const Value saved = Saved(fresh, target);
        EXPECT_EQ(saved["keep"], Value(1));
        ExpectFields("saved", saved, expected);
        ExpectFields("saved again", Saved(Json(saved.toString(false)), target), expected);
        // Every key is written, whatever its field holds.
        EXPECT_EQ(Saved(Json("{}"), target).size(), expected.size());
    }

    vxJson::Value (*show_)(const T&);
    void (*prepare_)(T&);
    std::vector<std::vector<std::string>> rows_;
};
