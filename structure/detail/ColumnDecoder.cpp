#include "structure/detail/ColumnDecoder.h"

#include <limits>
#include <utility>

#include "structure/detail/TwoDecimals.h"
#include "structure/detail/ValueDecoder.h"

namespace dataengine::detail {
namespace {

constexpr auto kMaxSigned = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());

/// Replaces the integers of a column by unsigned ones of the same bits.
void MakeUnsigned(PackedColumn& column) {
    const auto& bits = std::get<std::vector<std::int64_t>>(column.values);
    column.values = std::vector<std::uint64_t>(bits.begin(), bits.end());
}

// Each reader takes one scalar of its kind from the bytes into its vector.

class IntegerReader {
  public:
    using Array = std::vector<std::int64_t>;

    static bool Reads(PackedKind kind) { return kind == PackedKind::kInteger; }
    bool Read(PackedBytes& bytes, const PackedHead& head, std::int64_t& value, JsonPool&) {
        const PackedInteger integer = bytes.TakeInteger(head);
        value = static_cast<std::int64_t>(integer.bits);
        hasNegative_ |= integer.isNegative;
        hasGreat_ |= !integer.isNegative && integer.bits > kMaxSigned;
        return true;
    }
    bool Finish(PackedColumn& column) const {
        if (!hasGreat_) return true;
        if (hasNegative_) return false;
        MakeUnsigned(column);
        return true;
    }

  private:
    bool hasNegative_ = false;
    bool hasGreat_ = false;  // above the signed range
};

class FloatReader {
  public:
    using Array = std::vector<double>;

    static bool Reads(PackedKind kind) {
        return kind == PackedKind::kFloat64 || kind == PackedKind::kFloat32;
    }
    static bool Read(PackedBytes& bytes, const PackedHead& head, double& value, JsonPool& pool) {
        PackedBytes again = bytes;
        if (RoundToTwoDecimals(bytes.TakeFloat(head), value)) return true;
        rapidjson::Value rounded;
        DecodeValue(again, rounded, pool);
        if (!rounded.IsDouble()) return false;  // NaN or an infinity
        value = rounded.GetDouble();
        return true;
    }
    static bool Finish(PackedColumn&) { return true; }
};

class BooleanReader {
  public:
    using Array = PackedColumn::Booleans;

    static bool Reads(PackedKind kind) { return kind == PackedKind::kBoolean; }
    static bool Read(PackedBytes& bytes, const PackedHead&, std::uint8_t& value, JsonPool&) {
        value = bytes.TakeBoolean() ? 1 : 0;
        return true;
    }
    static bool Finish(PackedColumn&) { return true; }
};

class TextReader {
  public:
    using Array = PackedColumn::Texts;

    static bool Reads(PackedKind kind) { return kind == PackedKind::kStr; }
    static bool Read(PackedBytes& bytes, const PackedHead& head, std::string_view& value,
                     JsonPool&) {
        const auto size = static_cast<std::size_t>(bytes.TakeLength(head));
        value = {bytes.TakeBytes(size), size};
        return true;
    }
    static bool Finish(PackedColumn&) { return true; }
};

/// Reads `count` scalars of the reader's kind or nil. Returns false at anything else.
template <typename Reader>
bool ReadAll(PackedBytes& bytes, std::uint64_t count, JsonPool& pool, PackedColumn& column) {
    Reader reader;
    typename Reader::Array values(count);
    for (std::uint64_t i = 0; i < count; ++i) {
        const PackedHead& head = bytes.Head();
        if (Reader::Reads(head.kind)) {
            if (!reader.Read(bytes, head, values[i], pool)) return false;
        } else if (head.kind == PackedKind::kNil) {
            bytes.TakeNil();
            column.isNull.resize(count);
            column.isNull[i] = 1;
        } else {
            return false;
        }
    }
    column.values = std::move(values);
    return reader.Finish(column);
}

/// Reads an array of scalars of one kind. Returns false for anything else; the bytes then begin
/// anywhere.
bool ReadFlat(PackedBytes& bytes, JsonPool& pool, PackedColumn& column) {
    const PackedHead& head = bytes.Head();
    if (head.kind != PackedKind::kArray) return false;
    const std::uint64_t count = bytes.TakeLength(head);
    if (count > bytes.Remaining()) return false;
    PackedBytes first = bytes;
    for (std::uint64_t i = 0; i < count; ++i) {
        const PackedKind kind = first.Head().kind;
        if (IntegerReader::Reads(kind)) return ReadAll<IntegerReader>(bytes, count, pool, column);
        if (FloatReader::Reads(kind)) return ReadAll<FloatReader>(bytes, count, pool, column);
        if (TextReader::Reads(kind)) return ReadAll<TextReader>(bytes, count, pool, column);
        if (BooleanReader::Reads(kind)) return ReadAll<BooleanReader>(bytes, count, pool, column);
        if (kind != PackedKind::kNil) return false;
        first.TakeNil();
    }
    return false;
}

/// Moves the strings of an array into a vector that refers to them. Returns false, with `column`
/// unchanged, if a value is neither a string nor null, or all are null.
bool CopyTexts(const rapidjson::Value& value, PackedColumn& column) {
    if (!value.IsArray()) return false;
    PackedColumn::Texts texts(value.Size());
    std::vector<std::uint8_t> isNull(value.Size());
    std::size_t nulls = 0;
    for (rapidjson::SizeType i = 0; i < value.Size(); ++i) {
        if (value[i].IsString()) {
            texts[i] = {value[i].GetString(), value[i].GetStringLength()};
        } else if (value[i].IsNull()) {
            isNull[i] = 1;
            ++nulls;
        } else {
            return false;
        }
    }
    if (nulls == texts.size()) return false;
    column.values = std::move(texts);
    if (nulls != 0) column.isNull = std::move(isNull);
    return true;
}

}  // namespace

void DecodeColumn(PackedBytes& bytes, JsonPool& pool, PackedColumn& column) {
    const PackedBytes start = bytes;
    if (ReadFlat(bytes, pool, column)) return;
    bytes = start;
    column.isNull.clear();
    rapidjson::Value value;
    DecodeValue(bytes, value, pool);
    if (!CopyTexts(value, column)) column.values = std::move(value);
}

}  // namespace dataengine::detail
