#include <sstream>
#include <string>

#include <gmock/gmock.h>

#include "zvcam/commands/Progress.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using zvcam::Progress;
using zvcam::ProgressText;

TEST(Progress, TextTellsCountRateAndRemainingTime) {
    EXPECT_EQ(ProgressText(0, 400, "phones", seconds(0), 0), "0/400 phones");
    EXPECT_EQ(ProgressText(100, 400, "phones", seconds(10), 0), "100/400 phones  10/s  0:30 left");
    EXPECT_EQ(ProgressText(1, 10001, "phones", seconds(1), 0), "1/10001 phones  1.0/s  2:46:40 left");
    EXPECT_EQ(ProgressText(7, 0, "phones", seconds(2), 100), "7 phones  3.5/s");
}

TEST(Progress, BarFillsTheWidthThatTheTextLeaves) {
    EXPECT_EQ(ProgressText(100, 400, "phones", seconds(10), 45),
              "[##.........] 100/400 phones  10/s  0:30 left");
    EXPECT_EQ(ProgressText(400, 400, "phones", seconds(10), 200),
              "[" + std::string(40, '#') + "] 400/400 phones  40/s  0:00 left");
    EXPECT_EQ(ProgressText(100, 400, "phones", seconds(10), 40), "100/400 phones  10/s  0:30 left");
}

TEST(Progress, BarIsDrawnTenTimesASecondAndClearedAtTheEnd) {
    const Progress::Clock::time_point start{};
    std::ostringstream out;
    {
        Progress progress("phones", 4, out, Progress::Form::Bar, start);
        progress.advance(1, start + milliseconds(99));
        EXPECT_EQ(out.str(), "");
        progress.advance(1, start + milliseconds(100));
        const std::string first = out.str();
        EXPECT_THAT(first,
                    testing::AllOf(testing::StartsWith("\r\x1B[K["), testing::HasSubstr("2/4 phones  20/s")));
        progress.advance(1, start + milliseconds(199));
        EXPECT_EQ(out.str(), first);
        out.str("");
    }
    EXPECT_EQ(out.str(), "\r\x1B[K");
}

TEST(Progress, LogGetsALineAMinute) {
    const Progress::Clock::time_point start{};
    std::ostringstream out;
    {
        Progress progress("phones", 600, out, Progress::Form::Lines, start);
        for (int second = 1; second <= 130; ++second) {
            progress.advance(2, start + seconds(second));
        }
    }
    EXPECT_EQ(out.str(), "120/600 phones  2.0/s  4:00 left\n240/600 phones  2.0/s  3:00 left\n");
}

TEST(Progress, QuietRunShowsNothing) {
    std::ostringstream out;
    {
        Progress("phones", 2, out, Progress::Form::Nothing, {})
            .advance(2, Progress::Clock::time_point::max());
    }
    EXPECT_EQ(out.str(), "");
}

}  // namespace
