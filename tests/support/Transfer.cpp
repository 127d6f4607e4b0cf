#include "tests/support/Transfer.h"

#include "tests/support/Rows.h"
#include "tests/support/Texts.h"

using vxJson::Value;

namespace {

// Per kind: a value of it, and the conversions that refuse it.
const auto kKinds = Rows(R"(
    null                                          | -
    true                                          | time bytes
    -1                                            | bytes
    1.5                                           | int time bytes
    "x"                                           | int bool time
    ["x"]                                         | text int bool time bytes numbers
    {}                                            | text int bool time bytes
    {"$date":{"$numberLong":"5"}}                 | text bool bytes
    {"$binary":{"base64":"/w==","subType":"00"}}  | int bool time
)");

struct Field {
    std::string name;
    std::string readAs;
    Value stale;
    Value fresh;
    std::string saved;
    Value loaded;
    Value cleared;
    Value moved;
};

using Fields = std::vector<Field>;

Field ReadField(const std::vector<std::string>& row) {
    const auto value = [&](std::size_t column) {
        const std::string& text = row.at(column);
        return text == "-" ? Value() : Json(text == "=" ? row[3] : text);
    };
    return {row[0], row.at(1), value(2), value(3), row.at(4), value(5), value(6), value(7)};
}

bool IsRead(const Field& field) {
    return field.readAs != "-";
}

/// The document of one column.
Value Document(const Fields& fields, Value Field::*column) {
    Value document = Json(R"({"keep":1})");
    for (const Field& field : fields) {
        if (IsRead(field)) document[field.name] = field.*column;
    }
    return document;
}

void ExpectFields(const Value& shown, const Fields& fields, Value Field::*column) {
    for (const Field& field : fields) EXPECT_EQ(shown[field.name], field.*column) << field.name;
}

void CheckSave(const TransferClass& subject, const Fields& fields) {
    const Value fresh = Document(fields, &Field::fresh);
    Value target = Json(R"({"keep":1})");
    Value expected = target;
    for (const Field& field : fields) {
        if (field.saved == "whole") target[field.name]["old"] = 1;
        if (field.saved != "-") expected[field.name] = field.fresh;
    }
    const Value saved = subject.save(fresh, target);
    for (const Field& field : fields) {
        EXPECT_EQ(saved[field.name], std::as_const(expected)[field.name]) << field.name;
    }
    EXPECT_EQ(saved["keep"], Value(1));
    EXPECT_EQ(subject.save(Json(saved.toString(false)), target), saved);
    // Every key is written, whatever its field holds.
    EXPECT_EQ(subject.save(Json("{}"), target).size(), expected.size());
}

/// A value of the wrong kind stops the load: the fields before it are new, the others old.
void CheckKinds(const TransferClass& subject, const Fields& fields) {
    const Value stale = Document(fields, &Field::stale);
    Value expected = subject.load({stale});
    for (const Field& field : fields) {
        if (!IsRead(field)) continue;
        for (const auto& kind : kKinds) {
            SCOPED_TRACE(field.name + " of " + kind[0]);
            Value document = Document(fields, &Field::fresh);
            document[field.name] = Json(kind[0]);
            const Value shown = subject.load({stale, document});
            const bool stops =
                (" " + kind[1] + " ").find(" " + field.readAs + " ") != std::string::npos;
            ASSERT_EQ(shown["stopped"].asBool(), stops);
            if (!stops) continue;
            for (const Field& other : fields) {
                EXPECT_EQ(shown[other.name], expected[other.name]) << other.name;
            }
        }
        expected[field.name] = field.loaded;
    }
}

}  // namespace

void CheckTransfer(const std::string& file, const std::vector<TransferClass>& classes) {
    std::vector<std::string> names;
    std::vector<Fields> tables;
    for (const auto& row : RowsOf(file)) {
        if (row[0] == "class") {
            names.push_back(row.at(1));
            tables.emplace_back();
        } else {
            tables.at(names.size() - 1).push_back(ReadField(row));
        }
    }
    ASSERT_EQ(names.size(), classes.size());
    for (std::size_t i = 0; i < classes.size(); ++i) {
        SCOPED_TRACE(names[i]);
        const Value stale = Document(tables[i], &Field::stale);
        const Value fresh = Document(tables[i], &Field::fresh);
        ExpectFields(classes[i].load({stale, fresh}), tables[i], &Field::loaded);
        ExpectFields(classes[i].load({stale, Json("{}")}), tables[i], &Field::cleared);
        ExpectFields(classes[i].moveFrom(fresh), tables[i], &Field::moved);
        CheckSave(classes[i], tables[i]);
        CheckKinds(classes[i], tables[i]);
    }
}
