#include <cstdio>
#include <utility>

#include "tests/calibration/CalibrationBytes.h"

namespace {

constexpr const char* kPath = "/mnt/vendor/persist/camera/com.zelvan.oiscal.w.bin";

/// A phone with this fuse id property and this maker of its back wide module.
PhoneBuilder Phone(const std::string& fuseId, const std::string& maker) {
    return RearPhone(Eeprom({{1, maker},
                             {8434, "2134"},
                             {8466, "F098"},
                             {8436, "05"},
                             {8468, "06"},
                             {8461, "2C"},
                             {8493, "30"}}))
        .property("vendor.camera.sensor.w.fuseID", fuseId);
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
    const std::string kFuseId = "semc0004AABB";
    const Bytes sensor{0xAA, 0xBB};
    const Bytes good = File(sensor, 4000, 17000);
    const Bytes longer = WithCrc(Bytes(good.begin(), good.end() - 2) + Bytes{9, 9, 9});
    const Bytes cut = WithCrc({1, 4, 0xAA});
    Bytes swapped = good;
    std::swap(swapped[swapped.size() - 2], swapped.back());
    const struct {
        Bytes file;
        std::string fuseId, state, error;
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
        {WithCrc({1, 255}), "semc0000", "2",
         noMatch + ":" + HexText(WithCrc({1, 255})).substr(4) + std::string(2 * 253, '0')},
        {cut, "semc0002AA", "2", noMatch + "AA:AA" + HexText(Bytes(cut.end() - 2, cut.end())) + "00"},
        {WithCrc({1, 2, 0xAA, 0xBB}), kFuseId, "2", ""},
        {File(sensor, 3999, 9000), kFuseId, "2", ""},
        {File(sensor, 9000, 17001), kFuseId, "2", ""},
        {File(sensor, 9000, 0xFFFFFFF0), kFuseId, "2", ""},
    };
    for (const auto& [file, fuseId, state, error] : kCases) {
        const TestPhone phone(Phone(fuseId, "03"));
        phone.write(kPath, file);
        TestPlugin plugin;
        plugin.mDataBinExistMask = 0x11;
        plugin.OverriderOisCamCalData();
        SCOPED_TRACE(HexText(file));
        std::string published;
        for (const auto& property : phone.record().properties) {
            published += property.name + " " + property.value + "\n";
        }
        EXPECT_EQ(published, std::string("persist.vendor.camera.oisAlgoParam ") +
                                 (state == "0" ? "4000,17000,5,6" : "8500,61592,5,6") +
                                 "\npersist.vendor.camera.zv.oiscal.state " + state +
                                 "\npersist.vendor.camera.oisHvXyMatch 1"
                                 "\npersist.vendor.camera.oisSensitivity 83984,84960\n");
        EXPECT_EQ(plugin.mDataBinExistMask, state == "2" ? 0x01UL : 0x11UL);
        EXPECT_EQ(phone.errors(), error.empty() ? Lines() : Lines{"[GetOisParamFromPersist] " + error});
    }
}

TEST(OisCalibration, ModuleDecidesTheRest) {
    const auto outcome = [](const PhoneBuilder& fitted, std::size_t unreadable) {
        const TestPhone phone(fitted);
        TestPlugin plugin;
        plugin.OverriderOisCamCalData();
        EXPECT_EQ(phone.errors().back(),
                  std::string("[GetOisParamFromPersist] failed to open file ") + kPath);
        EXPECT_THAT(phone.errors(),
                    testing::Contains("[MemCpyCamCalData] calAllData is NULL!").Times(unreadable));
        return phone.logOf("readOTPOisParam").back() + "; " +
               phone.property("persist.vendor.camera.oisAlgoParam") + "; " +
               phone.property("persist.vendor.camera.oisSensitivity");
    };
    EXPECT_EQ(outcome(Phone("", "03"), 0), "I vendorId = 0x03; 8500,61592,5,6; 83984,84960");
    EXPECT_EQ(outcome(Phone("", "01"), 0), "I vendorId = 0x01; 8500,61592,5,6; 59570,60546");
    EXPECT_EQ(outcome(RearPhone(), 7), "I vendorId = 0x00; 0,0,0,0; 48828,48828");
}

}  // namespace
