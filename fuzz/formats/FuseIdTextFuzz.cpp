// Any text as the value of a fuse id property: both readers say the same, and no field is longer than it
// says.

#include <stdexcept>

#include "formats/FuseIdText.h"
#include "fuzz/support/Fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(TextOf({data, size}));
    const std::optional<formats::FuseIdField> field = formats::TryParseFuseIdText(text);
    try {
        const formats::FuseIdField thrower = formats::ParseFuseIdText(text);
        Require(field && field->length == thrower.length && field->hex == thrower.hex);
        Require(thrower.length < 0 || thrower.hex.size() <= static_cast<std::size_t>(thrower.length));
        Require(thrower.hex.size() + 8 <= size);
    } catch (const std::logic_error&) {
        Require(!field);
    }
    return 0;
}
