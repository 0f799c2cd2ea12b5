#include <cstdint>

#include "metadata/Theme.h"
#include "platform/IMetadata.h"
#include "platform/IMetadataProvider.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Entry.h"
#include "platforminfo/Operation.h"
#include "tables/PublishedTags.h"

using NSCam::IMetadata;

namespace {

/// The platform's own tag for the 35 mm-equivalent focal length.
constexpr IMetadata::Tag_t kPlatformFocalLength35mm = 0x8006000E;

constexpr unsigned char kBeautyVersion = 3;
constexpr std::int32_t kLutConfig = 3;

constexpr UpdateFailure BeautyRefused(const char* lead) {
    return {.lead = lead, .tail = ".", .priority = ANDROID_LOG_INFO};
}

}  // namespace

int CameraPlatformInfoZelvan::MetadataUpdateBeautyData(IMetadata& meta, int /*instanceId*/) {
    const Operation self(__func__);
    self.update(meta, MakeEntry<unsigned char>(ZELVAN_BEAUTY_VERSION, {kBeautyVersion}),
                BeautyRefused("HALCYRION Beauty VERSION tag"));

    IMetadata::IEntry options(ZELVAN_BEAUTY_OPTIONCONFIG);
    options.push_back<bool, std::int32_t>(false);
    self.update(meta, options, BeautyRefused("HALCYRION Beauty optionconfig tag"));

    const auto makeup = MakeEntry<unsigned char>(ZELVAN_BEAUTY_MAKEUP, {1});
    if (const int error = meta.update(makeup.tag(), makeup); error != 0) {
        // The line names the version tag, not the makeup tag.
        self.logRefusal(BeautyRefused("HALCYRION Beauty Makeup tag"), ZELVAN_BEAUTY_VERSION, error);
    }
    return 0;
}

int CameraPlatformInfoZelvan::MetadataUpdateFocalLength35mm(IMetadata& meta, int /*instanceId*/,
                                                            NSCam::IMetadataProvider* provider) {
    const Operation self(__func__);
    LOGI(self, "enter");
    // A snapshot that no later merge reaches.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const IMetadata characteristics = provider->staticCharacteristics();
    const IMetadata::IEntry platformValue = characteristics.entryFor(kPlatformFocalLength35mm);
    const float focalLength = platformValue.isEmpty() ? 0.0F : platformValue.itemAt<float>(0);
    self.update(meta, MakeEntry<float>(ZELVAN_FOCAL_LENGTH_35MM, {focalLength}));
    LOGI(self, "exit");
    return 0;
}

int CameraPlatformInfoZelvan::UpdatePhotoStyleInfo(IMetadata& meta, int /*instanceId*/) {
    const Operation self(__func__);
    LOGI(self, "enter");
    const unsigned char supported = IsThemeNoTesmor() ? 0 : 1;
    int result = self.update(meta, MakeEntry<unsigned char>(ZELVAN_CUSTOM_QUALITY_SUPPORTED, {supported}),
                             {.lead = "ZV IMetadata::update,tag ZELVAN_CUSTOM_QUALITY_SUPPORTED"});
    if (supported == 1) {
        result = self.update(meta, MakeEntry<std::int32_t>(ZELVAN_CAMERA_CIQLUT_CONFIG_MAKS, {kLutConfig}),
                             {.lead = "ZV IMetadata::update,tag ZELVAN_CAMERA_CIQLUT_CONFIG_MAKS"});
    }
    LOGI(self, "exit");
    return result;
}
