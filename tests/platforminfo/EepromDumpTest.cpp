#include <sys/stat.h>

#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Bytes kEeprom = Eeprom({{0, "0A10"}, {16383, "FE"}});
const std::string kDump = "/data/vendor/camera/eeprom_raw_data_dump_";

/// A phone with a value for the property that asks for the dump.
PhoneBuilder Asked(const std::vector<FittedSensor>& sensors, const std::string& value) {
    return PhoneOf(sensors).property("vendor.debug.camera.eeprom_dump", value);
}

std::vector<std::string> ChangedPaths(TestPhone& phone) {
    std::vector<std::string> paths;
    for (const record::ChangedFile& file : phone.phone().changedFiles()) {
        paths.push_back(file.path);
    }
    return paths;
}

TEST(EepromDump, OneLineAByteAndAFileAModule) {
    TestPhone phone(Asked({{7, kEeprom}, {1}, {2}, {3, kEeprom}}, "1"));
    TestPlugin plugin;
    plugin.mCamCalData[20] = MakeCamCalAllData();
    phone.write(kDump + "back_main", std::vector<std::uint8_t>(300000, 'x'));
    // A pipe that nobody reads is passed over.
    ASSERT_EQ(mkfifo((phone.phone().root().string() + kDump + "back_ultra").c_str(), 0600), 0);
    EXPECT_EQ(plugin.DumpEepromRawData(), 0);
    EXPECT_THAT(phone.logOf("DumpEepromRawData"),
                ElementsAre("I DumpEepromRawData +", "I DumpEepromRawData -"));
    EXPECT_THAT(ChangedPaths(phone), ElementsAre(kDump + "back_main", kDump + "back_tele"));
    EXPECT_THAT(phone.file(kDump + "back_tele"), IsEmpty());
    const std::vector<std::uint8_t> bytes = phone.file(kDump + "back_main");
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_EQ(text.size(), 16384U * 14);
    EXPECT_THAT(text, testing::StartsWith("0x0000 = 0x0a\n0x0001 = 0x10\n0x0002 = 0x00\n"));
    EXPECT_THAT(text, testing::EndsWith("0x3ffe = 0x00\n0x3fff = 0xfe\n"));
}

TEST(EepromDump, EndsEarly) {
    const auto dump = [](const PhoneBuilder& asked, int result, std::size_t files) {
        TestPhone phone(asked);
        EXPECT_EQ(TestPlugin().DumpEepromRawData(), result);
        EXPECT_THAT(ChangedPaths(phone), testing::SizeIs(files));
        return phone.logOf("DumpEepromRawData");
    };
    const std::string start = "I DumpEepromRawData +";
    EXPECT_THAT(dump(Asked({{7, kEeprom}}, "0"), 0, 0), IsEmpty());
    EXPECT_THAT(dump(Asked({{7, kEeprom}}, "yes"), 0, 0), IsEmpty());
    EXPECT_THAT(dump(Asked({{7, kEeprom}}, "1").faults({.sensorList = true}), 0, 0),
                ElementsAre(start, "I DumpEepromRawData -"));
    EXPECT_THAT(dump(Asked({{7, kEeprom}, {99}, {2, kEeprom}}, "1"), -1, 1),
                ElementsAre(start, "E find mRoleId2ModuleName[-1] error!"));
}

}  // namespace
