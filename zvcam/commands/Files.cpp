#include "zvcam/commands/Files.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "formats/PrintableText.h"
#include "virtualphone/InputFile.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Output.h"

namespace zvcam {

namespace fs = std::filesystem;

void Complain(std::string_view message) {
    /// Longest line, in bytes.
    constexpr std::size_t kLongest = 300;
    std::cerr << formats::Shortened("zvcam: " + formats::Printable(message), kLongest) << '\n';
}

std::vector<std::uint8_t> ReadFile(const std::string& file, std::string_view expected) {
    virtualphone::FileContent content = virtualphone::ReadInput(file);
    if (!content.error.empty()) {
        throw std::runtime_error(virtualphone::InputName(file) + ": expected " + std::string(expected) +
                                 ", got " + content.instead());
    }
    return std::move(content.bytes);
}

int ForEachFile(const std::vector<std::string>& files,
                const std::function<bool(const std::string&)>& isGood) {
    int status = kExitSuccess;
    for (const std::string& file : files) {
        try {
            status = std::max(status, isGood(file) ? kExitSuccess : kExitBad);
        } catch (const std::runtime_error& error) {
            Complain(error.what());
            status = kExitUnusable;
        }
    }
    return status;
}

void CheckIsNew(const fs::path& path, bool force) {
    std::error_code error;
    // A pipe or a device stays one.
    if (!force && path != "-" && fs::exists(fs::symlink_status(path, error)) &&
        !fs::is_other(fs::status(path, error))) {
        throw std::runtime_error("cannot write " + path.string() + ": it exists; --force replaces it");
    }
}

void CheckOutputs(const std::vector<std::string>& outputs, const std::vector<std::string>& inputs,
                  bool force) {
    for (auto output = outputs.begin(); output != outputs.end(); ++output) {
        if (output->empty()) {
            continue;
        }
        CheckIsNoInput(*output, {inputs.begin(), inputs.end()});
        if (std::any_of(outputs.begin(), output, [&](const std::string& other) {
                return !other.empty() &&
                       fs::absolute(other).lexically_normal() == fs::absolute(*output).lexically_normal();
            })) {
            throw std::runtime_error("cannot write " + *output + ": another output goes there");
        }
        CheckIsNew(*output, force);
    }
}

}  // namespace zvcam
