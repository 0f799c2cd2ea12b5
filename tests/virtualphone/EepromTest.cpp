#include <algorithm>
#include <fstream>

#include "formats/EepromDump.h"
#include "platform/CamCalDrv.h"
#include "tests/support/Describe.h"
#include "tests/support/PhoneBuilder.h"
#include "tests/support/TestPhone.h"

namespace {

constexpr std::uint32_t kImageSize = 16384;
constexpr std::uint8_t kUntouched = 0xEE;

struct Read {
    std::uint32_t returned;
    Bytes bytes;
};

/// Reads the module of sensor index 0 into a buffer of exactly `length` bytes.
Read ReadModule(std::uint32_t offset = 0, std::uint32_t length = kImageSize, unsigned deviceBit = 1) {
    Bytes bytes(length, kUntouched);
    const std::uint32_t returned =
        NSCam::CamCalHelper::getInstance()->readMemory(1799, deviceBit, offset, length, bytes.data());
    return {returned, bytes};
}

/// The bytes that differ from `fill`, such as "8=C2 9=8E ".
std::string Others(const Bytes& bytes, std::uint8_t fill) {
    std::string others;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != fill) {
            others += std::to_string(i) + "=" + HexText(std::span(bytes).subspan(i, 1)) + " ";
        }
    }
    return others;
}

std::string PhoneWithEeprom(const std::string& eeprom) {
    return R"({"sensors": [{"eeprom": )" + eeprom + "}]}";
}

TEST(Eeprom, FillThenBytesThenChecksums) {
    const TestPhone phone(PhoneBuilder(
        virtualphone::ParsePhone(PhoneWithEeprom(R"({ "fill": 1, "bytes": { "8": "C28E 3D04", "0x43": "FF" },
                                              "checksums": "halcyrion_semco_wide_imx707_eeprom" })"),
                                 "", "p.json")));
    const Read read = ReadModule();
    EXPECT_EQ(read.returned, kImageSize);
    // A range of n ones has checksum n % 255 + 1; the header stays as it was written.
    EXPECT_EQ(Others(read.bytes, 1), "8=C2 9=8E 10=3D 11=04 67=1C 1892=14 3800=58 8395=E9 8505=4B ");
}

TEST(Eeprom, NamedChecksumsAreBroken) {
    const virtualphone::PhoneDescription phone = virtualphone::ParsePhone(
        PhoneWithEeprom(R"({ "fill": 1, "checksums": "halcyrion_semco_wide_imx707_eeprom",
                             "breakChecksums": ["LSC", "AF"] })"),
        "", "p.json");
    EXPECT_EQ(Others(phone.sensors.at(0).eeprom.value().image, 1), "67=1D 1892=14 3800=59 8395=E9 8505=4B ");
}

TEST(Eeprom, FileIsRawOrDumpTextAndTakesBytes) {
    const virtualphone::TemporaryFolder folder;
    std::ofstream(folder.path() / "raw") << "\x02\x03";
    std::ofstream(folder.path() / "dump") << formats::EepromDumpText(Eeprom({{1, "A5"}, {16383, "5A"}}));
    std::ofstream(folder.path() / "full") << std::string(kImageSize, '\x07');
    const auto othersOf = [&folder](const std::string& eeprom, std::uint8_t fill) {
        const virtualphone::PhoneDescription phone =
            virtualphone::ParsePhone(PhoneWithEeprom(eeprom), folder.path(), "p.json");
        EXPECT_EQ(phone.sensors.at(0).eeprom.value().image.size(), kImageSize);
        return Others(phone.sensors[0].eeprom->image, fill);
    };
    EXPECT_EQ(othersOf(R"({"file": "raw"})", 0), "0=02 1=03 ");
    EXPECT_EQ(othersOf(R"({"file": "dump"})", 0), "1=A5 16383=5A ");
    EXPECT_EQ(othersOf(R"({"file": "full", "bytes": {"16383": "08"}})", 7), "16383=08 ");
    EXPECT_EQ(othersOf("{}", 0), "");
}

TEST(Eeprom, ReadsStayInsideImageAndBuffer) {
    const struct {
        std::optional<std::uint32_t> readReturns;
        std::uint32_t offset, length, returned, copied;
    } kCases[] = {
        {{}, 16380, 4, 4, 4},
        {{}, 16380, 8, 4, 4},
        {{}, 0xFFFFFFFF, 8, 0, 0},
        {100, 0, 16384, 100, 100},
        {4294967295, 0, 8, 4294967295, 8},
    };
    for (const auto& [readReturns, offset, length, returned, copied] : kCases) {
        const TestPhone phone(PhoneOf({{.eeprom = Eeprom({}, 7), .readReturns = readReturns}}));
        const Read read = ReadModule(offset, length);
        Bytes expected(length, kUntouched);
        std::fill_n(expected.begin(), copied, std::uint8_t{7});
        EXPECT_EQ(read.returned, returned) << offset;
        EXPECT_EQ(read.bytes, expected) << offset;
    }
}

TEST(Eeprom, FailedReadsCountButNullDriversDoNot) {
    {
        TestPhone phone(PhoneOf({{}, {.eeprom = Eeprom()}}));
        EXPECT_EQ(ReadModule(0, 16, 1).returned, 0U);  // has no memory
        EXPECT_EQ(ReadModule(0, 16, 4).returned, 0U);  // is no sensor
        EXPECT_EQ(ReadModule(0, 16, 3).returned, 0U);  // is two devices
        EXPECT_EQ(ReadModule(2, 16, 2).returned, 16U);
        EXPECT_THAT(phone.record().eepromReads, testing::ElementsAre(record::EepromRead{1799, 1, 0, 16, 0},
                                                                     record::EepromRead{1799, 4, 0, 16, 0},
                                                                     record::EepromRead{1799, 3, 0, 16, 0},
                                                                     record::EepromRead{1799, 2, 2, 16, 16}));
    }
    const TestPhone broken(PhoneOf({{.eeprom = Eeprom()}}).faults({.calibrationDriver = true}));
    EXPECT_EQ(NSCam::CamCalHelper::getInstance(), nullptr);
    EXPECT_EQ(CamCalDrvBase::createInstance(), nullptr);
}

TEST(Eeprom, AutofocusRecordByDeviceBit) {
    const TestPhone phone(PhoneOf({{},
                                   {.autofocus = {{.points = {{{-5, 6}}}}}},
                                   {.autofocus = {{true, {{{3000, 123}, {100, 456}}}}}}}));
    // "result capability distance,position distance,position"; the record starts out with marks of its own.
    const auto read = [](unsigned deviceBit, CamCalRecordKind kind) {
        CamCal3ARecord record{.capability = 99, .afPoints = {{{1, 1}, {1, 1}}}};
        const int result = CamCalDrvBase::createInstance()->readRecord(deviceBit, kind, record);
        std::string text = std::to_string(result) + " " + std::to_string(record.capability);
        for (const CamCalAfPoint& point : record.afPoints) {
            text += " " + std::to_string(point.distance) + "," + std::to_string(point.lensPosition);
        }
        return text;
    };
    EXPECT_EQ(read(1, CamCalRecordKind::ThreeA), "-1 99 1,1 1,1");
    EXPECT_EQ(read(2, CamCalRecordKind::ThreeA), "0 0 -5,6 0,0");
    EXPECT_EQ(read(4, CamCalRecordKind::ThreeA), "0 2 3000,123 100,456");
    EXPECT_EQ(read(4, static_cast<CamCalRecordKind>(2)), "-1 99 1,1 1,1");
    EXPECT_EQ(read(8, CamCalRecordKind::ThreeA), "-1 99 1,1 1,1");
}

}  // namespace
