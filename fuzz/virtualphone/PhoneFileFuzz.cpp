// Any text as a phone file. A phone that reads must be written as a file that reads as the same, and start.

#include "fuzz/support/Fuzzing.h"
#include "virtualphone/PhoneFile.h"

namespace {

/// Where no side file lies.
constexpr const char* kNoFolder = "/nowhere";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        virtualphone::PhoneDescription phone =
            virtualphone::ParsePhone(TextOf({data, size}), kNoFolder, "fuzz.json");
        const std::string text = virtualphone::PhoneFileText(phone);
        Require(virtualphone::PhoneFileText(virtualphone::ParsePhone(text, kNoFolder, "again.json")) == text);
        const FuzzPhone running(std::move(phone));
    } catch (const virtualphone::PhoneFileError&) {
        // The one answer to a bad phone file.
    }
    return 0;
}
