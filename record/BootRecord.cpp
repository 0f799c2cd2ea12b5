#include "record/BootRecord.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>

namespace record {

namespace {

/// The parts of "(123)[SetFuseIdProp] enter".
struct LineParts {
    std::string_view operation;
    std::string_view text;
};

LineParts Split(std::string_view message) {
    const std::size_t open = message.find(")[");
    const std::size_t close = message.find(']');
    if (!message.starts_with('(') || open == std::string_view::npos || close == std::string_view::npos ||
        close < open) {
        return {.operation = {}, .text = message};
    }
    std::string_view text = message.substr(close + 1);
    if (text.starts_with(' ')) {
        text.remove_prefix(1);
    }
    return {.operation = message.substr(open + 2, close - open - 2), .text = text};
}

}  // namespace

std::string ModeText(unsigned mode) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "%04o", mode);
    return text.data();
}

std::string SignalName(int signal) {
    const char* const name = sigabbrev_np(signal);
    return name == nullptr ? "signal " + std::to_string(signal) : std::string("SIG") + name;
}

std::string EndText(const Ended& ended) {
    const std::string step = ended.step.empty() ? "" : " in " + ended.step;
    switch (ended.how) {
        case Ended::How::Threw:
            return "threw: " + ended.what;
        case Ended::How::Signal:
            return "was ended by " + SignalName(ended.signal) + step;
        case Ended::How::Exited:
            return "exited with status " + std::to_string(ended.exitStatus) + step;
        case Ended::How::Timeout: {
            std::array<char, 32> seconds;
            std::snprintf(seconds.data(), seconds.size(), "%g", ended.seconds);
            return std::string("did not return within ") + seconds.data() + " seconds" + step;
        }
        case Ended::How::Returned:
            break;
    }
    return "returned";
}

std::string_view OperationOf(const LogLine& line) {
    return Split(line.message).operation;
}

std::string LastOperation(const std::vector<Event>& events) {
    for (auto event = events.rbegin(); event != events.rend(); ++event) {
        const auto* const line = std::get_if<LogLine>(&*event);
        if (line != nullptr && !OperationOf(*line).empty()) {
            return std::string(OperationOf(*line));
        }
    }
    return "";
}

std::string_view TextOf(const LogLine& line) {
    return Split(line.message).text;
}

}  // namespace record
