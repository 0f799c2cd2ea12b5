#include "record/BootRecord.h"

#include <algorithm>
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

/// A diagnosis asks this of every line several times.
LineParts Split(std::string_view message) {
    const auto at = [message](std::size_t i) { return i < message.size() ? message[i] : ']'; };
    std::size_t open = at(0) == '(' ? 1 : message.size();
    while (at(open) != ']' && !(at(open) == ')' && at(open + 1) == '[')) {
        ++open;
    }
    const std::size_t close = at(open) == ')' ? message.find(']', open) : std::string_view::npos;
    if (close == std::string_view::npos) {
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
            return std::string("did not return within ") + seconds.data() +
                   (ended.seconds == 1 ? " second" : " seconds") + step;
        }
        case Ended::How::Returned:
            break;
    }
    return "returned";
}

const ChangedFile* FindWritten(const BootRecord& boot, std::string_view path) {
    for (const std::vector<ChangedFile>* const files : {&boot.files, &boot.rewritten}) {
        const auto found = std::find_if(files->begin(), files->end(),
                                        [path](const ChangedFile& file) { return file.path == path; });
        if (found != files->end()) {
            return &*found;
        }
    }
    return nullptr;
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
