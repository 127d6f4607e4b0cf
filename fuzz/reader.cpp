// Reads a frame by a reader that remembers its header, and by the helper. The input consists of the
// selection and the offsets as JSON text and of the frame, separated by zero bytes.

#include "fuzz/Fuzz.h"
#include "tests/structure/SampleUnit.h"
#include "tests/support/Ending.h"
#include "tests/support/SameReading.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 10000) return 0;  // documents are compared recursively
    const std::vector<std::string> parts = SplitAtZeros(InputText(data, size), 3);
    if (!IsShallow(parts[0]) || !IsShallow(parts[1])) return 0;
    const vxJson::Value selection = JsonOrNull(parts[0]);
    dataengine::PackedFrameReader reader(selection);
    reader.SetLimit(std::size_t{1} << 40);
    for (const std::string& frame : {parts[2], parts[2], SampleUnit::Written().Frame(), parts[2]}) {
        Require(SameReading(reader, frame, JsonOrNull(parts[1]), selection));
        rapidjson::Document document;
        EndingOf([&] { return reader.Open(frame) && reader.Decode(document); });
    }
    return 0;
}
