#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include <android/log.h>

#include "platform/CamCalDrv.h"
#include "platform/DevicePath.h"
#include "platform/IMetadataProvider.h"
#include "platform/Properties.h"
#include "platform/ThirdCalibration.h"

/// A plug-in that publishes a little of everything, odd values included, and then ends as property
/// "test.ending" says.
class __attribute__((visibility("default"))) CameraPlatformInfoZelvan {
  public:
    static CameraPlatformInfoZelvan* CreateInstance();
    void ExposureModuleInfo();
};

namespace {

template <typename Item>
void Publish(NSCam::IMetadata& metadata, std::uint32_t tag, std::initializer_list<Item> items) {
    NSCam::IMetadata::IEntry entry(tag);
    for (const Item& item : items) {
        entry.push_back(item);
    }
    metadata.update(tag, entry);
}

NSCam::IMetadata OddMetadata() {
    NSCam::IMetadata metadata;
    Publish(metadata, 0x91010021, {60});
    Publish(metadata, 0x1, {0.6F, 24.0F, -std::numeric_limits<float>::infinity()});
    Publish<std::int64_t>(metadata, 0x2,
                          {-9000000000, 100000000, 200000000, 300000000, 400000000, 500000000, 600000000});
    Publish(metadata, 0x3, {NSCam::IMetadata::Memory("\x01\xAB", 2), NSCam::IMetadata::Memory()});
    Publish<unsigned char>(metadata, 0x4, {255});
    Publish<int>(metadata, 0x5, {});
    return metadata;
}

}  // namespace

CameraPlatformInfoZelvan* CameraPlatformInfoZelvan::CreateInstance() {
    static CameraPlatformInfoZelvan instance;
    return &instance;
}

void CameraPlatformInfoZelvan::ExposureModuleInfo() {
    std::array<char, PROPERTY_VALUE_MAX> ending;
    property_get("test.ending", ending.data(), "return");
    property_set("test.ending", ending.data());
    property_set("refused", "\x1B[1m\xFF");
    std::ofstream(DevicePath("/data/vendor/camera/made")) << "made";
    NSCam::NSMetadataProviderManager::valueForByDeviceId(0x40007)->mergeStaticMetadata(OddMetadata());
    std::array<unsigned char, 3> block{1, 2, 0xFF};
    ThirdCalibration::set3rdCalibration(block.data(), 3);
    NSCam::CamCalHelper::getInstance()->readMemory(1799, 1, 2, 3, block.data());
    __android_log_print(ANDROID_LOG_DEBUG, "Fake", "quiet");
    __android_log_print(ANDROID_LOG_ERROR, "Fake", "loud");
    if (ending.data() == std::string("throw")) {
        throw std::out_of_range("off the end");
    }
    if (ending.data() == std::string("throw int")) {
        throw 7;
    }
    if (ending.data() == std::string("crash")) {
        raise(SIGSEGV);
    }
    if (ending.data() == std::string("abort")) {
        std::abort();
    }
    if (ending.data() == std::string("exit")) {
        std::exit(0);
    }
    if (ending.data() == std::string("hang")) {
        for (;;) {
            pause();
        }
    }
    if (ending.data() == std::string("print")) {
        std::puts("printed");
    }
}
