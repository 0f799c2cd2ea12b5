#include <vector>

#include <gmock/gmock.h>

#include "analysis/Diff.h"
#include "tables/PublishedProperties.h"
#include "tests/analysis/Boots.h"

namespace {

TEST(Diff, APhoneIsTheSameEachTimeItBoots) {
    EXPECT_TRUE(
        analysis::Compare(BootOf(SamplePhone("fieldtrouble")), BootOf(SamplePhone("fieldtrouble"))).none());
}

TEST(Diff, TellsBySubjectWhatIsNotTheSame) {
    virtualphone::PhoneDescription damaged = SamplePhone("halcyrion");
    damaged.properties[tables::kEepromDumpProperty] = "1";
    damaged.sensors[2].captureSize.width = 4000;
    damaged.logicalDevices.pop_back();
    const analysis::Boot left = BootOf(SamplePhone("halcyrion"));
    analysis::Boot right = BootOf(std::move(damaged));
    right.record.ended->how = record::Ended::How::Signal;
    right.record.ended->signal = 11;
    const analysis::Differences differences = analysis::Compare(left, right);
    std::vector<std::string> items;
    const auto take = [&](const std::vector<analysis::Difference>& from) {
        for (const analysis::Difference& difference : from) {
            items.push_back(difference.item + ": " + difference.left.value_or("-") + " / " +
                            difference.right.value_or("-"));
        }
    };
    take(differences.endings);
    take(differences.properties);
    take(differences.devices);
    take(differences.handOvers);
    for (const analysis::FileDifference& file : differences.files) {
        items.push_back(file.path + (file.left == nullptr ? " new" : ""));
    }
    for (const analysis::TagDifference& tag : differences.tags) {
        items.push_back("tag of " + testing::PrintToString(tag.devices) + " " +
                        std::to_string(tag.left->as<std::int32_t>()[0]) + " / " +
                        std::to_string(tag.right->as<std::int32_t>()[0]));
    }
    for (const analysis::LogDifference& log : differences.log) {
        items.push_back("log " + log.step + " " + std::to_string(log.left.size()) + " / " +
                        std::to_string(log.right.size()));
    }
    const std::string dump = "/data/vendor/camera/eeprom_raw_data_dump_";
    EXPECT_THAT(items, testing::ElementsAre(
                           "the boot: returned / was ended by SIGSEGV", "device 7: 26 tags / -",
                           dump + "back_main new", dump + "back_tele new", dump + "back_ultra new",
                           dump + "front_main new", "tag of { \"2\", \"4/2\", \"5/2\" } 18874368 / 18432000",
                           "log DumpEepromRawData 0 / 26"));
}

TEST(Diff, AddressesAndThreadsDoNotCount) {
    const auto text = [](const char* message) {
        return analysis::WithoutRunNumbers({.priority = 4, .tag = "T", .message = message});
    };
    EXPECT_EQ(text("(12)[A] at 0x55b8833eddb8, 0x91010021"), "[A] at ADDRESS, 0x91010021");
    EXPECT_EQ(text("(12)[A] 0x7fffffffffff"), text("(345)[A] 0x55b8833eddb8"));
    EXPECT_EQ(text("no number"), "no number");
}

}  // namespace
