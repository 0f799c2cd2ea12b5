#include <array>
#include <functional>
#include <set>
#include <vector>

#include <gmock/gmock.h>

#include "analysis/Influence.h"
#include "tests/analysis/Boots.h"

namespace {

using analysis::Effect;
using analysis::Effects;
using analysis::Range;
using analysis::Stretch;
using testing::ElementsAre;
using Kind = Effect::Kind;

/// Which effects each byte has, as letters; a dot has none.
std::size_t EffectsOf(const std::string& bytes, const Stretch& stretch, std::vector<std::set<char>>& sets) {
    std::set<char> letters;
    for (const char letter : bytes.substr(stretch.first, stretch.count)) {
        if (letter != '.') {
            letters.insert(letter);
        }
    }
    const auto known = std::find(sets.begin(), sets.end(), letters);
    if (known != sets.end()) {
        return static_cast<std::size_t>(known - sets.begin());
    }
    sets.push_back(letters);
    return sets.size() - 1;
}

struct Found {
    std::string bytes;  ///< as the search says
    std::size_t tries = 0;
};

Found Search(const std::string& bytes, std::size_t step) {
    std::vector<std::set<char>> sets = {{}};
    analysis::StretchSearch search(bytes.size(), step);
    Found found;
    while (!search.done()) {
        std::vector<Stretch> stretches = search.next();
        // Results come in any order.
        std::reverse(stretches.begin(), stretches.end());
        for (const Stretch& stretch : stretches) {
            ++found.tries;
            search.take(stretch, EffectsOf(bytes, stretch, sets));
        }
    }
    for (const Range& range : search.ranges()) {
        EXPECT_FALSE(range.open);
        EXPECT_EQ(found.bytes.size(), range.bytes.first);
        const std::set<char>& letters = sets[range.effects];
        EXPECT_LE(letters.size(), 1U);
        found.bytes.append(range.bytes.count, letters.empty() ? '.' : *letters.begin());
    }
    EXPECT_EQ(search.settledBytes(), bytes.size());
    return found;
}

TEST(StretchSearch, FindsEachByteThatDoesSomething) {
    const auto placed = [](std::string bytes, std::size_t at, const std::string& what) {
        return bytes.replace(at, what.size(), what);
    };
    const std::string nothing(5000, '.');
    // Fields that touch each other and that lie across stretches; the first byte and the last.
    std::string bytes = placed(nothing, 0, "a..bbc");
    bytes = placed(bytes, 1023, "dd.e");
    bytes = placed(bytes, 4999, "f");
    // A long range with a field inside, and with gaps that end with a stretch of 16 or reach beyond it.
    bytes = placed(bytes, 2003, std::string(1234, 's'));
    bytes = placed(bytes, 2510, "gh");
    bytes = placed(bytes, 2100, "............");
    bytes = placed(bytes, 2907, ".............");
    for (const std::size_t step : {1U, 3U, 16U}) {
        EXPECT_EQ(Search(bytes, step).bytes, bytes) << step;
    }
    // With large steps the gaps in the long range may pass for bytes of it, and nothing else may.
    const auto withoutGaps = [&](std::string found) {
        return placed(placed(std::move(found), 2100, "ssssssssssss"), 2907, "sssssssssssss");
    };
    EXPECT_EQ(withoutGaps(Search(bytes, 1024).bytes), withoutGaps(bytes));
    EXPECT_LT(Search(bytes, 16).tries, 450U);
    EXPECT_LE(Search(nothing, 16).tries, 5U);
    EXPECT_EQ(Search("", 16).bytes, "");
    EXPECT_EQ(Search("a", 16).bytes, "a");
}

TEST(StretchSearch, CostsLittleForALongRangeWhateverTheStep) {
    std::string bytes(16384, '.');
    bytes.replace(1929, 1873, std::string(1873, 's'));
    for (const std::size_t step : {32U, 64U, 128U, 256U, 512U}) {
        const Found found = Search(bytes, step);
        EXPECT_EQ(found.bytes, bytes) << step;
        EXPECT_LT(found.tries, 250U) << step;
    }
}

TEST(StretchSearch, SaysWhatIsOpenWhenItIsStopped) {
    analysis::StretchSearch search(2048, 1024);
    EXPECT_THAT(search.next(), ElementsAre(Stretch{0, 1024}, Stretch{1024, 1024}));
    search.take({1024, 1024}, 0);
    EXPECT_TRUE(search.next().empty());
    search.take({0, 1024}, 7);
    EXPECT_EQ(search.next().size(), 2U);
    EXPECT_EQ(search.settledBytes(), 1024U);
    EXPECT_THAT(search.ranges(),
                ElementsAre(Range{.bytes = {0, 1024}, .effects = 0, .tried = 512, .open = true},
                            Range{.bytes = {1024, 1024}, .effects = 0, .tried = 1024, .open = false}));
}

TEST(Effects, TellWhatTwoBootsDifferIn) {
    const record::TagValues one(std::vector<std::int32_t>{1});
    const record::TagValues two(std::vector<std::int32_t>{2});
    const auto line = [](const char* message) {
        return record::LogLine{.priority = 4, .tag = "T", .message = message};
    };
    record::BootRecord left;
    left.events = {line("(1)[A] a"),
                   line("(1)[B] at 0x55b8833eddb8"),
                   record::PropertySet{"p", "1", true},
                   record::PropertySet{"q", "1", true},
                   record::ProviderMerge{7, {{1, one}, {2, one}}},
                   record::ProviderMerge{7, {{1, one}}},
                   record::HandOver{{1}}};
    left.files = {{.path = "/f", .mode = 0600, .bytes = {1}}};
    left.ended.emplace();
    record::BootRecord right = left;
    // Another thread and another address; a file that was there before.
    std::get<record::LogLine>(right.events[0]).message = "(22)[A] a";
    std::get<record::LogLine>(right.events[1]).message = "(22)[B] at 0x7fffffffffff";
    std::swap(right.files, right.rewritten);
    const analysis::Reference reference(left);
    EXPECT_THAT(reference.effectsIn(right), testing::IsEmpty());
    right.rewritten[0].mode = 0644;
    right.events = {line("(1)[A] b"),
                    line("(1)[B] at 0x7fffffffffff"),
                    record::PropertySet{"p", "2", true},
                    record::PropertySet{"p", "1", true},
                    record::PropertySet{"q", "1", false},
                    record::ProviderMerge{7, {{1, two}, {3, one}}},
                    record::HandOver{{1}},
                    record::HandOver{{1}}};
    right.ended->how = record::Ended::How::Exited;
    const Effects effects = reference.effectsIn(right);
    const std::string first = "of provider 7";
    EXPECT_THAT(effects, ElementsAre(Effect{Kind::Ending, "", 0}, Effect{Kind::Property, "q", 0},
                                     Effect{Kind::File, "/f", 0}, Effect{Kind::Device, first, 0},
                                     Effect{Kind::Tag, first, 1}, Effect{Kind::Tag, first, 2},
                                     Effect{Kind::Tag, first, 3}, Effect{Kind::HandOver, "", 0, 1},
                                     Effect{Kind::Log, "A", 0}));
    EXPECT_EQ(analysis::ReadEffectBytes(EffectBytes(effects)), effects);
    EXPECT_TRUE(ReachesPublished(effects));
    EXPECT_FALSE(analysis::ReachesPublished({{Kind::Log, "A", 0}}));
}

TEST(Influence, EveryPatternChangesEachByteOfItsStretchAndNoOther) {
    virtualphone::PhoneDescription phone = SamplePhone("halcyrion");
    std::vector<std::uint8_t>& image = phone.sensors[2].eeprom->image;
    for (std::size_t i = 0; i < image.size(); ++i) {
        image[i] = static_cast<std::uint8_t>(i * 7 / 5);
    }
    const std::vector<analysis::Input> inputs = analysis::InputsOf(phone, {});
    ASSERT_EQ(inputs[2].name, "back tele");
    for (const analysis::Pattern pattern : analysis::kPatterns) {
        virtualphone::PhoneDescription changed = WithChange(phone, inputs[2], {100, 5000}, pattern);
        const std::vector<std::uint8_t>& bytes = changed.sensors[2].eeprom->image;
        for (std::size_t i = 0; i < image.size(); ++i) {
            EXPECT_EQ(bytes[i] != image[i], i >= 100 && i < 5100) << i;
        }
        changed.sensors[2].eeprom->image = image;
        EXPECT_EQ(changed, phone);
    }
}

TEST(Influence, InputsAreWhatThePhoneBringsAndWhatTheBootAskedFor) {
    virtualphone::PhoneDescription phone = SamplePhone("fieldtrouble");
    phone.properties["set"] = "1";
    record::BootRecord boot;
    boot.events = {record::PropertyAsked{"set", "1"}, record::PropertyAsked{"asked", std::nullopt}};
    std::vector<std::string> names;
    for (const analysis::Input& input : analysis::InputsOf(phone, boot)) {
        names.push_back(input.name + (input.set ? "" : " unset"));
    }
    EXPECT_THAT(names, ElementsAre("back main", "back ultra", "/vendor/etc/camera/com.zelvan.dcal.wt.golden",
                                   "/vendor/etc/camera/com.zelvan.dcal.wu.golden", "set", "asked unset"));
    for (const virtualphone::PhoneDescription& other :
         analysis::Without(phone, {.kind = analysis::Input::Kind::Property, .name = "set"})) {
        EXPECT_NE(other.properties, phone.properties);
    }
}

}  // namespace
