#include <climits>

#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

using testing::ElementsAre;
using testing::SizeIs;

const FittedSensor kWide{
    .deviceId = 7, .eeprom = Eeprom({{1, "03"}, {8, "C2"}, {12, "80"}, {16383, "5A"}}, 9), .sensorId = 1799};

TEST(ModuleMemory, ReadsAModuleOnceForAllReaders) {
    const TestPhone phone(PhoneOf({{1}, kWide}));
    TestPlugin plugin;
    EXPECT_EQ(plugin.GetVendorId(0), 0x03);
    const std::vector<std::string> firstLog = phone.log();
    EXPECT_THAT(firstLog,
                ElementsAre("I [MemCpyCamCalData] enter", "I [GetCamCalAllData] enter",
                            "I [GetDevIdByRoleId] roleID(0) ==> devID(7)",
                            "I [GetSensorIdxByRoleId] GetSensorIdxByRoleId devID = 7 ",
                            "I [GetSensorIdxByRoleId] roleID(0) ==> sensorIdx(1)",
                            "I [GetCamCalAllData] sensorIdx = 0x1, dualDevId = 0x2, sensorId = 0x707",
                            "I [GetCamCalAllData] exit", "I [MemCpyCamCalData] exit : ret = 0"));
    EXPECT_EQ(plugin.GetLensId(0), 0xC2);
    EXPECT_THAT(phone.log(), SizeIs(2 * firstLog.size() - 1));
    EXPECT_EQ(plugin.GetSensorId(0), 0x80);
    EXPECT_THAT(phone.record().eepromReads, ElementsAre(record::EepromRead{1799, 2, 0, 16384, 16384}));
}

TEST(ModuleMemory, AFailedReadIsNotRepeated) {
    const struct {
        FittedSensor sensor;
        Faults faults;
        std::size_t reads;
    } kCases[] = {
        {{7}, {}, 1},
        {{7, Eeprom(), 16383}, {}, 1},
        {{7, Eeprom(), 16385}, {}, 1},
        {{7, Eeprom()}, {.calibrationDriver = true}, 0},
    };
    for (const auto& [sensor, faults, reads] : kCases) {
        const TestPhone phone(PhoneOf({sensor}).faults(faults));
        TestPlugin plugin;
        EXPECT_EQ(plugin.GetVendorId(0), 255);
        EXPECT_EQ(plugin.GetLensId(0), 255);
        EXPECT_EQ(plugin.GetSensorId(0), 255);
        EXPECT_THAT(phone.record().eepromReads, SizeIs(reads));
        EXPECT_THAT(
            phone.errors(),
            ElementsAre("[GetCamCalAllData] GetCamCalCalDataV2 get all data error : roleID = 0",
                        "[MemCpyCamCalData] calAllData is NULL!", "[MemCpyCamCalData] calAllData is NULL!",
                        "[MemCpyCamCalData] calAllData is NULL!"));
    }
}

TEST(ModuleMemory, CopiesStayInsideTheImage) {
    const struct {
        int offset, size;
        const char* end;  ///< as the error line shows it; null: the copy succeeds
    } kCases[] = {
        {16368, 16, nullptr}, {0, 16384, nullptr}, {16384, 0, nullptr}, {16369, 16, "16385"},
        {-1, 2, "1"},         {-4, 4, "0"},        {4, -2, "2"},        {INT_MAX, INT_MAX, "-2"},
    };
    for (const auto& [offset, size, end] : kCases) {
        const TestPhone phone(PhoneOf({kWide}));
        std::vector<std::uint8_t> copy(16385, 0xEE);
        EXPECT_EQ(TestPlugin().MemCpyCamCalData(0, copy.data(), offset, size), end == nullptr ? 0 : -1);
        const std::size_t copied = end == nullptr ? static_cast<std::size_t>(size) : 0;
        EXPECT_EQ(copy[copied], 0xEE) << offset;
        if (end != nullptr) {
            EXPECT_THAT(
                phone.logOf("MemCpyCamCalData"),
                ElementsAre("I enter",
                            "E (offset + size) = " + std::string(end) + ", calAllData->dataSize = 16384",
                            "I exit : ret = -1"));
        } else if (size > 0) {
            EXPECT_EQ(copy[copied - 1], 0x5A) << offset;
        }
    }
}

TEST(ModuleMemory, NothingIsCopiedToNowhereOrFromAnEmptyImage) {
    const TestPhone phone(PhoneOf({kWide}));
    TestPlugin plugin;
    EXPECT_EQ(plugin.GetCamCalAllData(21), nullptr);  // no sensor: nothing to keep
    EXPECT_THAT(plugin.mCamCalData, testing::IsEmpty());
    EXPECT_EQ(plugin.MemCpyCamCalData(0, nullptr, 0, 0), -1);
    EXPECT_THAT(phone.logOf("MemCpyCamCalData"), ElementsAre("I enter", "I exit : ret = -1"));
    plugin.mCamCalData[0] = MakeCamCalAllData();
    EXPECT_EQ(plugin.GetVendorId(0), 255);
    EXPECT_THAT(phone.errors(),
                ElementsAre("[GetCamCalAllData] GetSensorIdxByRoleId(21) error!",
                            "[MemCpyCamCalData] (offset + size) = 2, calAllData->dataSize = 0"));
}

}  // namespace
