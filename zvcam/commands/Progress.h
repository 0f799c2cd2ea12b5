#pragma once

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <string>

namespace zvcam {

/// How far a long piece of work is. On a terminal a line that is drawn over, and gone at the end; elsewhere a
/// line a minute, so that a log shows that the work goes on.
///
///     Progress progress("phones", entries.size(), quiet);
///     for (const Entry& entry : entries) { Boot(entry); progress.advance(); }
class Progress {
  public:
    using Clock = std::chrono::steady_clock;
    enum class Form { Nothing, Lines, Bar };

    /// On standard error, in the form that it can show.
    /// @param noun of what is counted, in the plural.
    /// @param quiet shows nothing.
    Progress(std::string noun, std::size_t total, bool quiet);
    /// @param out outlives it.
    Progress(std::string noun, std::size_t total, std::ostream& out, Form form,
             Clock::time_point start = Clock::now());
    /// Clears the bar.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Counts what has been done. Draws at most ten times a second.
    void advance(std::size_t count = 1, Clock::time_point now = Clock::now());

    /// Clears the bar until the next advance, so that another line can be printed.
    void clear();

  private:
    std::ostream& mOut;
    Form mForm;
    std::string mNoun;
    std::size_t mTotal;
    std::size_t mDone = 0;
    Clock::time_point mStart;
    Clock::time_point mNext;  ///< nothing is drawn before
    bool mDrawn = false;
};

/// "[######........] 4500/10000 phones  612/s  0:09 left"; the bar takes what the rest leaves of the width.
/// @param total 0: unknown, which leaves bar and remaining time out.
/// @param width columns; a text that needs more stands without a bar.
std::string ProgressText(std::size_t done, std::size_t total, const std::string& noun,
                         Progress::Clock::duration elapsed, std::size_t width);

}  // namespace zvcam
