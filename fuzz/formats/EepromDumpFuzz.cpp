// Any bytes as a file of a module's memory: raw bytes, or the text of a dump in any of its forms. An image
// that is read comes back from the text that it is written as.

#include <variant>

#include "formats/EepromDump.h"
#include "fuzz/support/Fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const formats::EepromFile file = formats::ReadEepromFile({data, size});
    Require(file.image.empty() != file.expected.empty());
    Require(file.image.empty() || file.image.size() == tables::kEepromImageSize);
    // The text has a line a byte: one image in 64 goes through it.
    if (!file.image.empty() && size > 0 && data[size - 1] % 64 == 0) {
        const formats::EepromDump again = formats::ReadEepromDump(formats::EepromDumpText(file.image));
        const auto* const image = std::get_if<std::vector<std::uint8_t>>(&again);
        Require(image != nullptr && *image == file.image);
    }
    return 0;
}
