// Prints a frame as JSON text that loses nothing, which pack reads.

#include "structure/detail/MsgpackErrors.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Exact.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"
#include "tools/dataengine/Frames.h"
#include "tools/dataengine/Table.h"

namespace dataengine::tool {

int Unpack(const Options& options) {
    const std::string& path = options.input;
    CheckPaths({path}, {options.output});
    const std::string bytes = ReadFile(path);
    PackedFrameReader reader;
    OpenFrame(reader, path, bytes);

    Output output(options.output, Content::kJson);
    Sink sink([&](std::string_view text) { output.Write(text); });
    detail::PackedBytes packed(bytes.data(), bytes.size());
    sink.text += "{\"version\":" + ExactText(packed);
    sink.text += ",\n\"name\":" + ExactText(packed) + ",\n\"schema\":[";
    const std::uint64_t items = packed.TakeLength(packed.Head());
    for (std::uint64_t i = 0; i < items; ++i, sink.Check())
        sink.text += (i == 0 ? "\n" : ",\n") + ExactText(packed);
    sink.text += "],\n\"payload\":[";
    std::string error;
    for (const char* separator = "\n"; packed.Remaining() > 0 && error.empty(); sink.Check()) {
        const auto offset = static_cast<std::size_t>(packed.Next() - bytes.data());
        try {
            sink.text += separator + ExactText(packed);
        } catch (const msgpack::unpack_error&) {
            sink.text += separator + (R"({"$raw":")" + HexOf(bytes.substr(offset)) + "\"}");
            error = "byte " + std::to_string(offset) + ": is not a packed value; kept as \"$raw\"";
        }
        separator = ",\n";
    }
    sink.text += "]}\n";
    sink.Flush();
    Output::Complete(output);
    if (!error.empty()) PrintError(DisplayName(path) + ": " + error);
    return error.empty() ? 0 : 1;
}

}  // namespace dataengine::tool
