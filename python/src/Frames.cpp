#include "python/src/Frames.h"

#include <algorithm>
#include <atomic>
#include <unordered_map>
#include <utility>

#include "python/src/Columns.h"
#include "python/src/GilRelease.h"
#include "structure/CDEStructureDataHelper.h"
#include "structure/PackedFrame.h"
#include "structure/detail/MsgpackErrors.h"

namespace dataengine::python {
namespace {

std::uint64_t NextId() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

std::string TextOf(const rapidjson::Value& value) {
    return std::string(value.GetString(), value.GetStringLength());
}

/// Returns a member that each item of a decoded document has.
const rapidjson::Value& Member(const rapidjson::Value& item, const char* key) {
    return item.FindMember(key)->value;
}

bool IsTable(const rapidjson::Value& item) {
    return Member(item, "type").GetInt() == kTableType;
}

rapidjson::Value CopyOf(const rapidjson::Value& text, rapidjson::Document& document) {
    return rapidjson::Value(text.GetString(), text.GetStringLength(), document.GetAllocator());
}

/// Returns a document of the same items and columns without their values.
rapidjson::Document NamesOnly(const rapidjson::Document& document) {
    rapidjson::Document names(rapidjson::kArrayType);
    auto& pool = names.GetAllocator();
    const auto named = [&](const rapidjson::Value& item) {
        rapidjson::Value result(rapidjson::kObjectType);
        result.AddMember("type", Member(item, "type").GetInt(), pool);
        result.AddMember("name", CopyOf(Member(item, "name"), names), pool);
        return result;
    };
    for (const rapidjson::Value& item : document.GetArray()) {
        rapidjson::Value copy = named(item);
        if (IsTable(item)) {
            rapidjson::Value columns(rapidjson::kArrayType);
            for (const rapidjson::Value& column : Member(item, "column").GetArray())
                columns.PushBack(named(column), pool);
            copy.AddMember("column", columns, pool);
        }
        names.PushBack(copy, pool);
    }
    return names;
}

/// Returns whether the names are those of a document of this shape. The bytes of a header do not
/// answer that: Python code may change them after the frame was opened.
bool Fit(const std::vector<WantedNames>& names, const rapidjson::Document& document) {
    return std::equal(names.begin(), names.end(), document.Begin(), document.End(),
                      [](const WantedNames& wanted, const rapidjson::Value& item) {
                          return wanted.columns.size() ==
                                 (IsTable(item) ? Member(item, "column").Size() : 0);
                      });
}

/// Adds an entry unless the dict has the name already: the first of equal names is kept.
void AddFirst(py::dict& dict, const py::object& name, const rapidjson::Value& item,
              std::size_t depth) {
    const auto value = item.FindMember("value");
    if (value == item.MemberEnd()) return;  // a table within a table
    const int has = PyDict_Contains(dict.ptr(), name.ptr());
    if (has < 0) throw py::error_already_set();
    if (has == 0) dict[name] = ToPython(value->value, depth);
}

py::dict TableToDict(const rapidjson::Value& table, const WantedNames* names, std::size_t depth) {
    py::dict dict;
    const rapidjson::Value& columns = Member(table, "column");
    for (rapidjson::SizeType i = 0; i < columns.Size(); ++i) {
        const rapidjson::Value& column = columns[i];
        AddFirst(dict,
                 ToText(names == nullptr ? TextOf(Member(column, "name")) : names->columns[i]),
                 column, depth);
    }
    for (const rapidjson::Value& attribute : Member(table, "attributes").GetArray())
        AddFirst(dict, ToText(TextOf(Member(attribute, "name"))), attribute, depth);
    return dict;
}

/// Gives the columns of a table the wanted names of the same columns of a document.
void Rename(PackedTable& table, const rapidjson::Value& columns,
            const std::vector<std::string>& wanted) {
    std::unordered_map<std::string, std::string> names;
    for (rapidjson::SizeType i = 0; i < columns.Size(); ++i)
        names.emplace(TextOf(Member(columns[i], "name")), wanted[i]);
    for (PackedColumn& column : table.columns) {
        const auto name = names.find(column.name);
        if (name != names.end()) column.name = name->second;
    }
}

}  // namespace

Reader::Reader(const py::object& selection, const py::dict& mapping, const py::object& parser)
    : reader_(selection.is_none() ? PackedFrameReader()
                                  : PackedFrameReader(FromPython(selection))) {
    if (!parser.is_none()) parser_ = FromText(parser.ptr());
    for (const auto& [wanted, variable] : mapping) {
        Mapped mapped{FromText(wanted.ptr()), std::nullopt, ""};
        if (PyTuple_Check(variable.ptr()) && PyTuple_GET_SIZE(variable.ptr()) == 2) {
            mapped.parser = FromText(PyTuple_GET_ITEM(variable.ptr(), 0));
            mapped.variable = FromText(PyTuple_GET_ITEM(variable.ptr(), 1));
        } else {
            mapped.variable = FromText(variable.ptr());
        }
        mapping_.push_back(std::move(mapped));
    }
}

void Reader::Open(std::string_view frame, std::uint64_t id) {
    openedId_ = 0;
    if (!reader_.Open(frame)) throw FrameFailure("version: byte 0: is not 1");
    opened_ = frame;
    openedId_ = id;
}

template <typename Step>
void Reader::Run(std::string_view frame, std::uint64_t id, const Step& step) {
    const GilRelease release;
    const std::lock_guard<std::mutex> guard(lock_);
    try {
        if (openedId_ != id) Open(frame, id);
        step(reader_);
    } catch (const msgpack::unpack_error& error) {
        throw FrameFailure(error.what());
    } catch (const msgpack::type_error& error) {
        throw FrameFailure(error.what());
    } catch (const vxJson::Error& error) {
        throw FrameFailure(error.what());
    }
}

const std::vector<WantedNames>& Reader::NamesFor(const rapidjson::Document& document) {
    const auto header = opened_.substr(0, static_cast<std::size_t>(reader_.HeaderLength()));
    if (header == namesHeader_ && Fit(names_, document)) return names_;
    const std::string& parser = parser_ ? *parser_ : reader_.Name();
    std::map<DDKey, DDKey> mapping;
    for (const Mapped& mapped : mapping_) {
        const std::string& own = mapped.parser ? *mapped.parser : parser;
        mapping[DDKey(own, mapped.wanted)] = DDKey(own, mapped.variable);
    }
    rapidjson::Document names = NamesOnly(document);
    std::vector<std::string> unused;
    CDEStructureDataHelper::PostDataProcessing(mapping, parser, names, unused);
    namesHeader_.clear();
    names_.clear();
    for (const rapidjson::Value& item : names.GetArray()) {
        WantedNames& wanted = names_.emplace_back();
        wanted.item = TextOf(Member(item, "name"));
        if (!IsTable(item)) continue;
        for (const rapidjson::Value& column : Member(item, "column").GetArray())
            wanted.columns.push_back(TextOf(Member(column, "name")));
    }
    namesHeader_ = header;
    return names_;
}

Frame::Frame(std::shared_ptr<Reader> reader, const py::object& data)
    : reader_(std::move(reader)), buffer_(data), id_(NextId()) {
    Run([this](PackedFrameReader& open) {
        name_ = open.Name();
        headerLength_ = open.HeaderLength();
    });
}

template <typename Step>
void Frame::Run(const Step& step) const {
    reader_->Run(buffer_.Bytes(), id_, step);
}

py::object Frame::Schema() const {
    vxJson::Value schema;
    Run([&](PackedFrameReader& reader) { schema = reader.Schema(); });
    return ToPython(schema);
}

py::object Frame::Offsets() const {
    vxJson::Value offsets;
    Run([&](PackedFrameReader& reader) { offsets = reader.FindOffsets(); });
    return ToPython(offsets);
}

void Frame::DecodeInto(rapidjson::Document& document, const py::object& offsets,
                       std::vector<WantedNames>* names) const {
    const bool find = offsets.is_none();
    const vxJson::Value given = FromPython(offsets);
    if (!find && !given.isArray()) throw py::type_error("offsets must be a list");
    document.SetArray();
    Run([&](PackedFrameReader& reader) {
        // False also means that no item of the schema has a name: an empty document.
        const bool decoded = find ? reader.Decode(document) : reader.Decode(given, document);
        if (!decoded && !reader.Schema().isArray())
            throw FrameFailure("the schema is not an array of items");
        if (names != nullptr) *names = reader_->NamesFor(document);
    });
}

py::dict Frame::Decode(const py::object& offsets) const {
    rapidjson::Document document;
    std::vector<WantedNames> names;
    const bool rename = reader_->HasMapping();
    DecodeInto(document, offsets, rename ? &names : nullptr);
    py::dict dict;
    for (rapidjson::SizeType i = 0; i < document.Size(); ++i) {
        const rapidjson::Value& item = document[i];
        const py::object name = ToText(rename ? names[i].item : TextOf(Member(item, "name")));
        if (!IsTable(item)) {
            AddFirst(dict, name, item, reader_->Depth());
        } else if (!dict.contains(name)) {
            dict[name] = TableToDict(item, rename ? &names[i] : nullptr, reader_->Depth());
        }
    }
    return dict;
}

py::object Frame::Document(const py::object& offsets) const {
    rapidjson::Document document;
    DecodeInto(document, offsets, nullptr);
    return ToPython(static_cast<const rapidjson::Value&>(document));
}

py::object Frame::Table(const std::string& name, const py::object& offsets) const {
    const bool find = offsets.is_none();
    const vxJson::Value given = FromPython(offsets);
    if (!find && !given.isArray()) throw py::type_error("offsets must be a list");
    PackedTable table;
    bool found = false;
    const auto decode = [&](PackedFrameReader& reader, const std::string& own) {
        return find ? reader.DecodeTable(own, table) : reader.DecodeTable(own, given, table);
    };
    Run([&](PackedFrameReader& reader) { found = decode(reader, name); });
    if (!found && reader_->HasMapping()) {
        rapidjson::Document document;
        std::vector<WantedNames> names;
        DecodeInto(document, offsets, &names);
        for (rapidjson::SizeType i = 0; i < document.Size() && !found; ++i) {
            if (!IsTable(document[i]) || names[i].item != name) continue;
            const std::string own = TextOf(Member(document[i], "name"));
            Run([&](PackedFrameReader& reader) { found = decode(reader, own); });
            Rename(table, Member(document[i], "column"), names[i].columns);
        }
    }
    if (!found) return py::none();
    py::dict attributes;
    for (const rapidjson::Value& attribute : table.document.GetArray())
        AddFirst(attributes, ToText(TextOf(Member(attribute, "name"))), attribute,
                 reader_->Depth());
    return py::make_tuple(ToArrays(table, reader_->Depth()), attributes);
}

void Frame::Check(const py::object& offsets) const {
    rapidjson::Document document;
    DecodeInto(document, offsets, nullptr);
}

}  // namespace dataengine::python
