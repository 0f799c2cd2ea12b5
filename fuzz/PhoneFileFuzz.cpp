// Any text as a phone file. A phone that reads must be written as a file that reads as the same, and start.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

#include "virtualphone/PhoneFile.h"
#include "virtualphone/TemporaryFolder.h"
#include "virtualphone/VirtualPhone.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const virtualphone::TemporaryFolder root;
    try {
        virtualphone::PhoneDescription phone = virtualphone::ParsePhone(
            {reinterpret_cast<const char*>(data), size}, root.path() / "none", "fuzz.json");
        const std::string text = virtualphone::PhoneFileText(phone);
        if (virtualphone::PhoneFileText(virtualphone::ParsePhone(text, root.path(), "again.json")) != text) {
            std::abort();
        }
        const virtualphone::VirtualPhone running(std::move(phone), root.path());
    } catch (const virtualphone::PhoneFileError&) {
        // The one answer to a bad phone file.
    }
    return 0;
}
