#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "calibration/OisFile.h"
#include "tests/calibration/CalibrationBytes.h"
#include "tests/support/Describe.h"
#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

constexpr const char* kPath = "/mnt/vendor/persist/camera/com.zelvan.oiscal.w.bin";

/// A phone with this fuse id property and this maker of its back wide module.
std::string Phone(const std::string& fuseId, const std::string& maker) {
    return RearPhone(R"(, "properties": {"vendor.camera.sensor.w.fuseID": ")" + fuseId + "\"}",
                     R"(, "eeprom": {"bytes": {"1": ")" + maker + R"(", "8434": "2134", "8466": "F098",
                     "8436": "05", "8468": "06", "8461": "2C", "8493": "30"}})");
}

/// A file of version 1.
Bytes File(const Bytes& fuseId, unsigned gainX, unsigned gainY) {
    return WithCrc(Bytes{1} + Counted(fuseId) + BigEndian(gainX, 4) + BigEndian(gainY, 4));
}

std::string Mismatch(const Bytes& bytes) {
    char text[64];
    std::snprintf(text, sizeof(text), "'s crc is not match : [0x%x:0x%x]",
                  BitwiseCrc(bytes.data(), bytes.size() - 2),
                  static_cast<unsigned>(bytes[bytes.size() - 2] << 8 | bytes.back()));
    return std::string(kPath) + text;
}

TEST(OisCalibration, PersistFileDecidesGainsAndState) {
    const std::string noMatch = "OIS cali file fuseid not match : ";
    const std::string invalid = std::string(kPath) + " is an invalid file";
    const char* const kFuseId = "semc0004AABB";
    const Bytes sensor{0xAA, 0xBB};
    const Bytes good = File(sensor, 4000, 17000);
    const Bytes longer = WithCrc(Bytes(good.begin(), good.end() - 2) + Bytes{9, 9, 9});
    const Bytes cut = WithCrc({1, 4, 0xAA});
    Bytes swapped = good;
    std::swap(swapped[swapped.size() - 2], swapped.back());
    const struct {
        Bytes file;
        const char* fuseId;
        std::string state;
        std::string error;
    } kCases[] = {
        {good, kFuseId, "0", ""},
        {longer, kFuseId, "0", ""},
        {{}, kFuseId, "2", std::string(kPath) + " is empty"},
        {{0}, kFuseId, "2", std::string(kPath) + "'s crc is not match : [0x0:0x0]"},
        {swapped, kFuseId, "2", Mismatch(swapped)},
        {WithCrc({2, 2, 0xAA, 0xBB}), kFuseId, "3", invalid},
        {{0, 0}, kFuseId, "3", invalid},  // a good CRC of nothing, and then the version
        {File({0xAA}, 9000, 9000), kFuseId, "2", noMatch + "AABB:AA"},
        {File({}, 9000, 9000), "semc0000AABB", "2", noMatch + ":"},
        {good, "", "2", noMatch + ":AABB"},
        {good, "semcxxxxAABB", "2", noMatch + ":AABB"},
        {cut, "semc0002AA", "2", noMatch + "AA:AA" + HexText(Bytes(cut.end() - 2, cut.end())) + "00"},
        {WithCrc({1, 2, 0xAA, 0xBB}), kFuseId, "2", ""},
        {File(sensor, 3999, 9000), kFuseId, "2", ""},
        {File(sensor, 17001, 9000), kFuseId, "2", ""},
        {File(sensor, 9000, 3999), kFuseId, "2", ""},
        {File(sensor, 9000, 17001), kFuseId, "2", ""},
        {File(sensor, 9000, 0xFFFFFFF0), kFuseId, "2", ""},
    };
    for (const auto& [file, fuseId, state, error] : kCases) {
        const TestPhone phone(Phone(fuseId, "03"));
        phone.write(kPath, file);
        TestPlugin plugin;
        plugin.mDataBinExistMask = 0x11;
        plugin.OverriderOisCamCalData();
        std::vector<std::string> published;
        for (const auto& property : phone.record().properties) {
            published.push_back(property.name + " " + property.value);
        }
        EXPECT_THAT(published, testing::ElementsAre(std::string("persist.vendor.camera.oisAlgoParam ") +
                                                        (state == "0" ? "4000,17000,5,6" : "8500,61592,5,6"),
                                                    "persist.vendor.camera.zv.oiscal.state " + state,
                                                    "persist.vendor.camera.oisHvXyMatch 1",
                                                    "persist.vendor.camera.oisSensitivity 83984,84960"))
            << HexText(file);
        EXPECT_EQ(plugin.mDataBinExistMask, state == "2" ? 0x01UL : 0x11UL) << HexText(file);
        EXPECT_EQ(phone.errors(), error.empty()
                                      ? std::vector<std::string>{}
                                      : std::vector<std::string>{"[GetOisParamFromPersist] " + error});
    }
}

TEST(OisCalibration, ModuleDecidesTheRest) {
    const struct {
        std::string phone;
        const char* vendor;
        const char* algoParam;
        const char* sensitivity;
        std::size_t unreadable;
    } kCases[] = {
        {Phone("", "03"), "0x03", "8500,61592,5,6", "83984,84960", 0},
        {Phone("", "01"), "0x01", "8500,61592,5,6", "59570,60546", 0},
        {RearPhone(""), "0x00", "0,0,0,0", "48828,48828", 7},
    };
    for (const auto& [json, vendor, algoParam, sensitivity, unreadable] : kCases) {
        const TestPhone phone(json);
        TestPlugin plugin;
        plugin.OverriderOisCamCalData();
        EXPECT_EQ(phone.property("persist.vendor.camera.oisAlgoParam"), algoParam);
        EXPECT_EQ(phone.property("persist.vendor.camera.oisSensitivity"), sensitivity);
        EXPECT_THAT(phone.log(), testing::Contains(std::string("I [readOTPOisParam] vendorId = ") + vendor));
        EXPECT_THAT(phone.errors(),
                    testing::Contains("[MemCpyCamCalData] calAllData is NULL!").Times(unreadable));
        EXPECT_EQ(phone.errors().back(),
                  std::string("[GetOisParamFromPersist] failed to open file ") + kPath);
    }
}

TEST(OisCalibration, RandomBytesOfEveryLength) {
    const TestPhone phone(RearPhone(kFuseIds));
    TestPlugin plugin;
    std::mt19937 random(11);
    for (std::size_t size = 0; size <= 600; ++size) {
        Bytes bytes(size);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(random());
        }
        // Every other file goes on past its CRC and version, to gains that lie anywhere or nowhere in it.
        const bool checks = size >= 4 && size % 2 == 0;
        if (checks) {
            bytes[0] = 1;
            bytes.resize(size - 2);
            bytes = WithCrc(bytes);
        }
        phone.write(kPath, bytes);
        int gainX = -1;
        int gainY = -2;
        EXPECT_STREQ(plugin.GetOisParamFromPersist(gainX, gainY), "2") << size;
        EXPECT_EQ(gainX, -1);
        EXPECT_EQ(gainY, -2);

        const OisFile file(bytes);
        EXPECT_EQ(file.crcGood(), checks) << size;
        const Bytes padded = bytes + Bytes(300, 0);
        const auto gainAt = padded.begin() + 2 + padded[1];
        const Bytes gains(gainAt, gainAt + 8);
        EXPECT_EQ(BigEndian(file.gainX(), 4) + BigEndian(file.gainY(), 4), gains) << size;
        EXPECT_EQ(file.fuseIdHex().size(), 2U * padded[1]) << size;
    }
}

}  // namespace
