#pragma once

#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "record/Events.h"

namespace zvcam {

/// Which lines `logcat` shows: the least priority of each tag. Tags that no rule names are shown whole, as
/// Android's logcat does.
class LogFilter {
  public:
    /// Adds rules such as "CameraPlatformInfoZelvan:I" or "*:S", several of them parted by blanks or commas.
    /// A tag alone means all of its lines, "*" alone those from debug on.
    /// @return false for a text that is no rule.
    bool add(std::string_view rules);

    bool shows(const record::LogLine& line) const;

  private:
    bool addRule(std::string_view rule);

    std::map<std::string, int, std::less<>> mLeast;  ///< priority by tag
    int mLeastOfOthers = 0;
};

/// Prints a line in logcat's brief form, "I/Tag(  123): text"; each line of a text that has several.
/// The number is the thread's that the plug-in puts before its lines; 0 where a line has none.
void PrintLogLine(std::ostream& out, const record::LogLine& line);

/// 'V', 'D', 'I', 'W', 'E', 'F' or 'S'; '?' for what is no priority.
char PriorityLetter(int priority);

}  // namespace zvcam
