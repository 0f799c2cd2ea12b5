#include "zvcam/commands/Terminal.h"

#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <unistd.h>

namespace zvcam {

namespace {

std::string_view Environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

}  // namespace

void Complain(std::string_view message) {
    /// Longest line, in bytes.
    constexpr std::size_t kLongest = 300;
    std::cerr << formats::Shortened("zvcam: " + formats::Printable(message), kLongest) << '\n';
}

Style OutputStyle() {
    const std::string_view noColour = Environment("NO_COLOR");
    const std::string_view terminal = Environment("TERM");
    return {.colour =
                noColour.empty() && !terminal.empty() && terminal != "dumb" && isatty(STDOUT_FILENO) == 1};
}

}  // namespace zvcam
