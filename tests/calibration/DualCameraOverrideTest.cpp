#include "tests/calibration/DualCameraPair.h"

namespace {

TEST(DualCameraOverride, StateBySourcesOfThePairs) {
    const std::pair<std::string, Bytes> kFiles[] = {
        {kPersist + "a.dcal.bin", DualFile(kUltra, kWide, Block(4096))},
        {kPersist + "b.dcal.bin", WithCrc(DualFile(kWide, kTele, Block(2048)))},
        {kGolden, Bytes(4096, 90)},
        {"/vendor/etc/camera/com.zelvan.dcal.wt.golden", Bytes(4096, 91)},
    };
    const std::string error = "[OverriderDualCamCalData] error!";
    const std::string fatal = "[OverriderDualCamCalData] Fatal Error: calibration persist file lost!";
    const std::string lost = "[OverriderDualCamCalData] CameraRoleId 0 lost persist file";
    const struct {
        std::vector<std::size_t> files;
        std::string state, detail;
        unsigned long mask;
        Lines errors;
    } kCases[] = {
        {{}, "3", "<unset>", 0x10, {error, error}},
        {{2, 3}, "2", "2", 0x11, {fatal, lost, lost}},
        {{0, 1, 2, 3}, "0", "0", 0x11, {}},
        {{0, 2, 3}, "2", "2", 0x11, {fatal, lost}},
        {{0}, "0", "0", 0x10, {error}},
        {{3}, "2", "2", 0x10, {error, fatal, lost}},
    };
    for (const auto& [files, state, detail, mask, errors] : kCases) {
        TestPhone phone(RearPhoneWithFuseIds());
        for (const std::size_t file : files) {
            phone.write(kFiles[file].first, kFiles[file].second);
        }
        SCOPED_TRACE(testing::PrintToString(files));
        TestPlugin plugin;
        plugin.mDataBinExistMask = 0x11;
        plugin.OverriderDualCamCalData();
        EXPECT_EQ(phone.property("persist.vendor.camera.zv.dualcal.state"), state);
        EXPECT_EQ(phone.property("persist.vendor.camera.zv.dualcal.detail"), detail);
        EXPECT_EQ(plugin.mDataBinExistMask, mask);
        EXPECT_EQ(phone.errors(), errors);
        if (files.size() >= 3) {
            EXPECT_EQ(TakeDump(phone), Block(4096));
            EXPECT_EQ(phone.file("/data/vendor/camera/com.zelvan.dcal.wt.data"),
                      files.size() == 3 ? Bytes(4096, 91) : Block(2048) + Bytes(2048, 0));
        }
    }
}

}  // namespace
