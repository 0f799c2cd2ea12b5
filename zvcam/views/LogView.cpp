#include "zvcam/views/LogView.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <ostream>

#include <android/log.h>

#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

/// Letters of the priorities, the first is that of ANDROID_LOG_VERBOSE.
constexpr std::string_view kLetters = "VDIWEFS";

/// The thread id that leads "(123)[SetFuseIdProp] enter"; 0 in a line of another form.
int ThreadOf(std::string_view message) {
    int thread = 0;
    if (message.starts_with('(') && message.find(")[") != std::string_view::npos) {
        std::from_chars(message.data() + 1, message.data() + message.size(), thread);
    }
    return thread;
}

}  // namespace

bool LogFilter::add(std::string_view rules) {
    constexpr std::string_view kSeparators = " \t,";
    bool any = false;
    while (!rules.empty()) {
        const std::size_t start = std::min(rules.find_first_not_of(kSeparators), rules.size());
        rules.remove_prefix(start);
        const std::string_view rule = rules.substr(0, rules.find_first_of(kSeparators));
        rules.remove_prefix(rule.size());
        if (!rule.empty()) {
            any = true;
            if (!addRule(rule)) {
                return false;
            }
        }
    }
    return any;
}

bool LogFilter::addRule(std::string_view rule) {
    const std::size_t colon = rule.rfind(':');
    const std::string_view tag = rule.substr(0, colon);
    int least = tag == "*" ? ANDROID_LOG_DEBUG : ANDROID_LOG_VERBOSE;
    if (colon != std::string_view::npos) {
        const std::string_view priority = rule.substr(colon + 1);
        const char letter = priority.size() != 1 ? '\0'
                            : priority[0] >= 'a' && priority[0] <= 'z'
                                ? static_cast<char>(priority[0] - 'a' + 'A')
                                : priority[0];
        const std::size_t at = letter == '\0' ? std::string_view::npos : kLetters.find(letter);
        if (at == std::string_view::npos) {
            return false;
        }
        least = ANDROID_LOG_VERBOSE + static_cast<int>(at);
    }
    if (tag.empty()) {
        return false;
    }
    if (tag == "*") {
        mLeastOfOthers = least;
    } else {
        mLeast.insert_or_assign(std::string(tag), least);
    }
    return true;
}

bool LogFilter::shows(const record::LogLine& line) const {
    const auto rule = mLeast.find(line.tag);
    const int least = rule == mLeast.end() ? mLeastOfOthers : rule->second;
    return least != ANDROID_LOG_SILENT && line.priority >= least;
}

void PrintLogLine(std::ostream& out, const record::LogLine& line) {
    std::array<char, 24> thread;
    std::snprintf(thread.data(), thread.size(), "(%5d): ", ThreadOf(line.message));
    std::string lead = std::string(1, PriorityLetter(line.priority)) + "/" + Printable(line.tag);
    lead.resize(std::max<std::size_t>(lead.size(), 10), ' ');
    lead += thread.data();
    std::string_view rest = line.message;
    do {
        const std::string_view text = rest.substr(0, rest.find('\n'));
        out << lead << Printable(text) << '\n';
        rest.remove_prefix(std::min(rest.size(), text.size() + 1));
    } while (!rest.empty());
}

char PriorityLetter(int priority) {
    const int at = priority - ANDROID_LOG_VERBOSE;
    return at >= 0 && at < static_cast<int>(kLetters.size()) ? kLetters[static_cast<std::size_t>(at)] : '?';
}

}  // namespace zvcam
