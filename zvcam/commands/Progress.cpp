#include "zvcam/commands/Progress.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace zvcam {

namespace {

constexpr std::chrono::milliseconds kBetweenBars(100);
constexpr std::chrono::minutes kBetweenLines(1);
/// Of a bar that shows something, and of one that is still a line at a glance.
constexpr std::size_t kLeastBar = 8;
constexpr std::size_t kMostBar = 40;
/// Back to the line's start and clear it.
constexpr const char* kClearLine = "\r\x1B[K";

std::size_t TerminalWidth() {
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

Progress::Form FormOfStandardError(bool quiet) {
    return quiet                        ? Progress::Form::Nothing
           : isatty(STDERR_FILENO) == 1 ? Progress::Form::Bar
                                        : Progress::Form::Lines;
}

/// "1:02:03", "2:03".
std::string TimeText(double seconds) {
    // Beyond any patience, and within what the cast can hold.
    const auto whole = static_cast<long>(std::clamp(seconds, 0.0, 3.6e6));
    std::array<char, 40> text;
    if (whole >= 3600) {
        std::snprintf(text.data(), text.size(), "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
    } else {
        std::snprintf(text.data(), text.size(), "%ld:%02ld", whole / 60, whole % 60);
    }
    return text.data();
}

std::string RateText(double perSecond) {
    std::array<char, 40> text;
    std::snprintf(text.data(), text.size(), perSecond < 10 ? "%.1f/s" : "%.0f/s", perSecond);
    return text.data();
}

}  // namespace

Progress::Progress(std::string noun, std::size_t total, bool quiet)
    : Progress(std::move(noun), total, std::cerr, FormOfStandardError(quiet)) {}

Progress::Progress(std::string noun, std::size_t total, std::ostream& out, Form form, Clock::time_point start)
    : mOut(out),
      mForm(form),
      mNoun(std::move(noun)),
      mTotal(total),
      mStart(start),
      mNext(form == Form::Bar ? start + kBetweenBars : start + kBetweenLines) {}

Progress::~Progress() {
    clear();
}

void Progress::advance(std::size_t count, Clock::time_point now) {
    mDone += count;
    if (mForm == Form::Nothing || now < mNext) {
        return;
    }
    if (mForm == Form::Bar) {
        // The last column stays free: a terminal may wrap there.
        mOut << kClearLine << ProgressText(mDone, mTotal, mNoun, now - mStart, TerminalWidth() - 1)
             << std::flush;
        mDrawn = true;
        mNext = now + kBetweenBars;
    } else {
        mOut << ProgressText(mDone, mTotal, mNoun, now - mStart, 0) << "\n" << std::flush;
        mNext = now + kBetweenLines;
    }
}

void Progress::clear() {
    if (mDrawn) {
        mOut << kClearLine << std::flush;
        mDrawn = false;
    }
}

std::string ProgressText(std::size_t done, std::size_t total, const std::string& noun,
                         Progress::Clock::duration elapsed, std::size_t width) {
    const double seconds = std::chrono::duration<double>(elapsed).count();
    const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
    std::string text = std::to_string(done) + (total == 0 ? "" : "/" + std::to_string(total)) + " " + noun;
    if (rate > 0) {
        text += "  " + RateText(rate);
        if (total >= done && total > 0) {
            text += "  " + TimeText(static_cast<double>(total - done) / rate) + " left";
        }
    }
    const std::size_t frame = 3;  // "[] "
    if (total == 0 || width < text.size() + frame + kLeastBar) {
        return text;
    }
    const std::size_t cells = std::min(width - text.size() - frame, kMostBar);
    const auto filled = static_cast<std::size_t>(
        static_cast<double>(cells) * static_cast<double>(std::min(done, total)) / static_cast<double>(total));
    return "[" + std::string(filled, '#') + std::string(cells - filled, '.') + "] " + text;
}

}  // namespace zvcam
