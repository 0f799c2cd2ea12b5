#include <gmock/gmock.h>

#include "tests/zvcam/Zvcam.h"
#include "zvcam/views/DiagnosisWords.h"

namespace zvcam {
namespace {

TEST(Words, ABlobIsWholeWhereItsTextSaysEveryByte) {
    const struct {
        std::vector<std::uint8_t> bytes;
        std::string text;
        bool whole;
    } kCases[] = {
        {{}, "0 bytes", true},
        {{0}, "1 byte: 00", true},
        {std::vector<std::uint8_t>(16, 0), "16 bytes: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", true},
        {std::vector<std::uint8_t>(17, 0x15), "17 bytes of 0x15", true},
        {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18},
         "18 bytes: 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 and 2 more",
         false},
    };
    for (const auto& [bytes, text, whole] : kCases) {
        EXPECT_EQ(GlanceAt(bytes).text, text);
        EXPECT_EQ(GlanceAt(bytes).whole, whole) << text;
    }
}

TEST(Words, CalibrationIsBadWhereThereIsNoneAndDoubtfulWhereItIsNobodysOwn) {
    using Source = analysis::CalibrationSource;
    const struct {
        Source source;
        std::string words;
        std::optional<Verdict> verdict;
    } kCases[] = {{Source::None, "NONE", Verdict::Bad},
                  {Source::Eeprom, "EEPROM", std::nullopt},
                  {Source::Persist, "persist", std::nullopt},
                  {Source::Golden, "golden", Verdict::Doubtful}};
    for (const auto& [source, words, verdict] : kCases) {
        analysis::PairDecision decision;
        decision.source = source;
        EXPECT_EQ(SourceWords(decision).words, words);
        EXPECT_EQ(SourceWords(decision).verdict, verdict) << words;
    }
    analysis::StabiliserDecision stabiliser;
    const JudgedWords memory = SourceWords(stabiliser);
    stabiliser.fromFile = true;
    EXPECT_EQ(SourceWords(stabiliser).words, "persist");
    EXPECT_EQ(memory.words, "EEPROM");
    EXPECT_EQ(memory.verdict, Verdict::Doubtful);
}

TEST(Words, ATimeLimitCountsItsSeconds) {
    record::Ended ended;
    ended.how = record::Ended::How::Timeout;
    ended.seconds = 1;
    EXPECT_EQ(record::EndText(ended), "did not return within 1 second");
    ended.seconds = 0.5;
    ended.step = "A";
    EXPECT_EQ(record::EndText(ended), "did not return within 0.5 seconds in A");
}

TEST_F(Zvcam, PageOfAHealthyPhoneHasNoErrorOfItsOwnInItsLog) {
    const std::string page = zvcam("run '" PHONES "/halcyrion.json' --html -").out;
    std::size_t everywhere = 0;
    for (std::size_t at = 0; (at = page.find("<td>E on every phone</td>", at)) != std::string::npos; ++at) {
        ++everywhere;
    }
    EXPECT_EQ(everywhere, 8U);
    const std::string log = page.substr(page.find("<section id=\"log\""));
    EXPECT_THAT(log, testing::Not(testing::HasSubstr("<tr class=\"error\"")));
    // Lines of another tag than the first one's carry theirs.
    EXPECT_THAT(log, testing::HasSubstr("<td>CalibrationData </td>"));
}

}  // namespace
}  // namespace zvcam
