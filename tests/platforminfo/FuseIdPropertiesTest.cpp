#include <stdexcept>

#include "platform/Properties.h"
#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(FuseIdProperties, LongNameThenShortName) {
    // The fuse id bytes 1 to 16, of which each role takes its own number.
    const auto memory = [](const std::string& head, int qrOffset, const std::string& qrCode) {
        return Eeprom({{0, head}, {16, "0102030405060708090A0B0C0D0E0F10"}, {qrOffset, qrCode}});
    };
    const std::string qrBytes = "01313233343536373839404142434431";
    const std::string filler(26, '0');
    const std::string qrCode = "0000000014123456789@ABCD" + filler;
    const std::string noQRCode = std::string(24, '0') + filler;
    const struct {
        int deviceId;
        Bytes eeprom;
        std::string longName, shortName, value, qrLine;
    } kCases[] = {
        {7, memory("0003", 16354, qrBytes), "rearMain", "w",
         "semc00240102030405060708090A0B0C00000000" + qrCode, "qrCodeOffset = 0x3fe3, qrCodeSize = 14 "},
        {1, memory("0010", 8081, qrBytes), "frontMain", "f",
         "_aac00220102030405060708090A0B0000000000" + qrCode, "qrCodeOffset = 0x1f92, qrCodeSize = 14 "},
        {2, memory("0001", 16354, qrBytes), "rearTele", "t",
         "sunn00320102030405060708090A0B0C0D0E0F10" + qrCode, "qrCodeOffset = 0x3fe3, qrCodeSize = 14 "},
        {3, memory("0007", 8081, qrBytes), "rearUltra", "u",
         "ofil00320102030405060708090A0B0C0D0E0F10" + qrCode, "qrCodeOffset = 0x1f92, qrCodeSize = 14 "},
        {3, memory("0007", 8081, "02"), "rearUltra", "u",
         "ofil00320102030405060708090A0B0C0D0E0F10" + noQRCode, "QRCode data for roleId 21 is not valid"},
        // A maker without a QR code row: byte 0 stands for the flag.
        {7, memory("0101", 16354, qrBytes), "rearMain", "w",
         "sunn00240102030405060708090A0B0C00000000" + noQRCode, "qrCodeOffset = 0x0, qrCodeSize = 0 "},
    };
    for (const auto& row : kCases) {
        const TestPhone phone(PhoneOf({{row.deviceId, row.eeprom}}));
        EXPECT_EQ(TestPlugin().SetFuseIdProp(), 0);
        const std::string name = "vendor.camera.sensor." + row.shortName + ".fuseID";
        ASSERT_THAT(phone.record().properties, testing::SizeIs(2));
        EXPECT_EQ(phone.record().properties[0].name, "vendor.camera.sensor." + row.longName + ".fuseID");
        EXPECT_EQ(phone.record().properties[0].value, row.value);
        EXPECT_EQ(phone.property(name), row.value);
        EXPECT_THAT(phone.logOf("SetFuseIdProp"),
                    ElementsAre("I enter", "I [QRCODE] " + row.qrLine,
                                "I [FUSEID] set propertyname[" + name + "] = " + row.value, "I exit"));
    }
}

TEST(FuseIdProperties, AnUnknownMakerSkipsItsSensorAnUnknownRoleEndsIt) {
    const Bytes good = Eeprom({{1, "01"}});
    const TestPhone phone(PhoneOf({{7, Eeprom({{1, "02"}})}, {1}, {2, good}, {99}, {4, good}}));
    EXPECT_EQ(TestPlugin().SetFuseIdProp(), -1);
    EXPECT_THAT(phone.logOf("SetFuseIdProp"),
                ElementsAre("I enter", "I [QRCODE] QRCode data for roleId 20 is not valid",
                            testing::StartsWith("I [FUSEID] set propertyname[vendor.camera.sensor.t.fuseID]"),
                            "E find mRoleId2FuseIdDescriptorsMap[-1] error!"));
    EXPECT_THAT(phone.record().properties, testing::SizeIs(2));
}

TEST(FuseIdProperties, ReadBack) {
    const TestPhone phone;
    TestPlugin plugin;
    EXPECT_EQ(plugin.getPropertyFuseid(40), "");
    EXPECT_THAT(phone.log(), IsEmpty());
    EXPECT_THROW(plugin.getPropertyFuseid(20), std::out_of_range);
    property_set("vendor.camera.sensor.t.fuseID", "sunnfour0102");
    EXPECT_THROW(plugin.getPropertyFuseid(20), std::invalid_argument);
    property_set("vendor.camera.sensor.t.fuseID", "sunn00040A0B0C");
    EXPECT_EQ(plugin.getPropertyFuseid(20), "0A0B");
    EXPECT_THAT(phone.logOf("getPropertyFuseid"),
                ElementsAre("I proertyId: \n", "I proertyId:sunnfour0102 \n", "I proertyId:sunn00040A0B0C \n",
                            "I fuseLen: 4, fuseId:0A0B \n"));
}

}  // namespace
