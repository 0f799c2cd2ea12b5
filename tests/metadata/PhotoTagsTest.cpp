#include "platform/IMetadataProvider.h"
#include "tests/metadata/MetadataTest.h"

namespace {

TEST(PhotoTags, BeautyStoredOrLogged) {
    const Refusals refusals = {{"I HALCYRION Beauty VERSION tag", ZELVAN_BEAUTY_VERSION},
                               {"I HALCYRION Beauty optionconfig tag", ZELVAN_BEAUTY_OPTIONCONFIG},
                               {"", ZELVAN_BEAUTY_MAKEUP}};
    {
        Updating device;
        EXPECT_EQ(device.plugin.MetadataUpdateBeautyData(device.meta, 0), 0);
        const Tags tags{{"0x9101000C", "byte [1]"}, {"0x9101000E", "byte [3]"}, {"0x91010063", "int32 [0]"}};
        EXPECT_EQ(device.tags(), tags);
        EXPECT_EQ(device.phone.log(), Lines());
    }
    Updating device(PhoneBuilder().faults(FaultsOf(refusals)));
    EXPECT_EQ(device.plugin.MetadataUpdateBeautyData(device.meta, 0), 0);
    const Lines lines = RefusalLines(refusals);
    // The makeup line names the version tag.
    EXPECT_EQ(device.phone.logOf("MetadataUpdateBeautyData"),
              (Lines{lines[0] + ".", lines[1] + ".", "I HALCYRION Beauty Makeup tag:-1862205426 err:-3."}));
}

TEST(PhotoTags, FocalLengthIsThePlatformsOrZero) {
    const Refusals refusals = {{"E ZV IMetadata::update(), tag", ZELVAN_FOCAL_LENGTH_35MM}};
    const auto expect = [](const PhoneBuilder& fitted, const Tags& tags, const Lines& lines) {
        Updating device(fitted);
        auto* const provider = NSCam::NSMetadataProviderManager::valueForByDeviceId(0);
        EXPECT_EQ(device.plugin.MetadataUpdateFocalLength35mm(device.meta, 3, provider), 0);
        EXPECT_EQ(device.tags(), tags);
        EXPECT_EQ(device.phone.logOf("MetadataUpdateFocalLength35mm"), lines);
    };
    expect(PhoneBuilder().holds<float>(0, 0x8006000E, {23.7F, 9}), {{"0x9101004D", "float [23.7]"}},
           {"I enter", "I exit"});
    expect({}, {{"0x9101004D", "float [0]"}}, {"I enter", "I exit"});
    expect(PhoneBuilder().faults(FaultsOf(refusals)), {}, {"I enter", RefusalLines(refusals)[0], "I exit"});
}

TEST(PhotoTags, StyleFollowsTheTheme) {
    const std::string lead = "E ZV IMetadata::update,tag ZELVAN_";
    const Refusals refusals = {{lead + "CUSTOM_QUALITY_SUPPORTED", ZELVAN_CUSTOM_QUALITY_SUPPORTED},
                               {lead + "CAMERA_CIQLUT_CONFIG_MAKS", ZELVAN_CAMERA_CIQLUT_CONFIG_MAKS}};
    const Lines errors = RefusalLines(refusals);
    const auto expect = [](const std::string& theme, const Faults& faults, int result, const Tags& tags,
                           const Lines& lines) {
        SCOPED_TRACE(theme);
        Updating device(PhoneBuilder().property("ro.boot.product.theme_customize", theme).faults(faults));
        EXPECT_EQ(device.plugin.UpdatePhotoStyleInfo(device.meta, 0), result);
        EXPECT_EQ(device.tags(), tags);
        EXPECT_EQ(device.phone.logOf("UpdatePhotoStyleInfo"), lines);
    };
    const Tags supported = {{"0x9101005F", "byte [1]"}, {"0x9101003C", "int32 [3]"}};
    expect("", {}, 0, supported, {"I enter", "I exit"});
    expect("NoTesmor", {}, 0, {{"0x9101005F", "byte [0]"}}, {"I enter", "I exit"});
    expect("NoTesmorX", {}, 0, supported, {"I enter", "I exit"});
    expect("notesmor", FaultsOf(refusals), -2, {}, {"I enter", errors[0], errors[1], "I exit"});
    expect("NoTesmor", FaultsOf(refusals), -1, {}, {"I enter", errors[0], "I exit"});
}

}  // namespace
