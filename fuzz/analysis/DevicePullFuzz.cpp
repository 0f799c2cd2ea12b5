// Any text as a folder pulled from a device: each line "=== PATH" begins a file. A phone that is made of one
// can be written, and reads as the same.

#include <algorithm>

#include "analysis/DevicePull.h"
#include "fuzz/support/Fuzzing.h"
#include "virtualphone/PhoneFile.h"

namespace {

std::vector<analysis::PulledFile> FilesOf(FuzzBytes folder) {
    constexpr std::string_view kBegin = "=== ";
    std::vector<analysis::PulledFile> files;
    while (!folder.empty()) {
        const auto [line, rest] = SplitLine(folder);
        if (line.starts_with(kBegin)) {
            files.push_back({.path = std::string(line.substr(kBegin.size())), .bytes = {}});
        } else if (!files.empty()) {
            const std::size_t length = folder.size() - rest.size();
            files.back().bytes.insert(files.back().bytes.end(), folder.begin(),
                                      folder.begin() + static_cast<std::ptrdiff_t>(length));
        }
        folder = rest;
    }
    std::stable_sort(files.begin(), files.end(),
                     [](const auto& a, const auto& b) { return a.path < b.path; });
    return files;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const virtualphone::PhoneDescription kLike =
        virtualphone::ParsePhone(virtualphone::StartingPhoneFile(), "", "like.json");
    const analysis::DevicePull pull = analysis::PhoneFromDevice(FilesOf({data, size}), kLike, "like.json");
    if (pull.trouble.empty()) {
        const std::string text = virtualphone::PhoneFileText(pull.phone);
        try {
            Require(virtualphone::PhoneFileText(virtualphone::ParsePhone(text, "", "pulled.json")) == text);
        } catch (const virtualphone::PhoneFileError&) {
            // The answer to names that no phone file can have.
        }
    }
    return 0;
}
