#include "zvcam/commands/Validators.h"

#include <charconv>
#include <system_error>

namespace zvcam {

CLI::Validator WholeNumber(std::uint64_t least, std::uint64_t most) {
    const std::string range = std::to_string(least) + " to " + std::to_string(most);
    return {[=](const std::string& text) {
                std::uint64_t number = 0;
                const char* const end = text.data() + text.size();
                const auto [rest, error] = std::from_chars(text.data(), end, number);
                const bool good = error == std::errc() && rest == end && number >= least && number <= most;
                return good ? "" : "expected a whole number of " + range + ", got \"" + text + "\"";
            },
            range};
}

std::string CheckName(const std::string& text) {
    if (text.empty()) {
        return "expected a name, got an empty text";
    }
    return text.starts_with('-') && text != "-"
               ? "expected a name, got \"" + text + "\"; a file of that name is \"./" + text + "\""
               : "";
}

}  // namespace zvcam
