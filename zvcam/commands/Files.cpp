#include "zvcam/commands/Files.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <new>
#include <stdexcept>

#include "formats/PrintableText.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Output.h"

namespace zvcam {

namespace fs = std::filesystem;

void Complain(std::string_view message) {
    /// Longest line, in bytes.
    constexpr std::size_t kLongest = 300;
    std::cerr << formats::Shortened("zvcam: " + formats::Printable(message), kLongest) << '\n';
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
        std::error_code error;
        if (*output != "-" && !force && fs::is_regular_file(*output, error)) {
            throw std::runtime_error("cannot write " + *output + ": it exists; --force replaces it");
        }
    }
}

}  // namespace zvcam
