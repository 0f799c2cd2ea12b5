// The library by itself: nothing of the plug-in is linked into this program.

#include <cstddef>
#include <dlfcn.h>
#include <string>
#include <utility>

#include <gmock/gmock.h>

#include "virtualphone/TemporaryFolder.h"
#include "virtualphone/VirtualPhone.h"

// A member function is called as what it is to the linker: a function with `this` as its first argument.
// Clang's sanitizer compares C++ types and objects.
#if defined(__clang__)
#define CALLS_BY_LINKER_NAME __attribute__((no_sanitize("function")))
#else
#define CALLS_BY_LINKER_NAME
#endif

namespace {

template <typename Function>
Function Find(void* library, const char* symbol) {
    return reinterpret_cast<Function>(dlsym(library, symbol));
}

/// Loads the library, runs it and unloads it.
/// @return where its instance was, or null where it could not be loaded.
CALLS_BY_LINKER_NAME const void* BootOnce() {
    void* const library = dlopen(PLUGIN, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        ADD_FAILURE() << dlerror();
        return nullptr;
    }
    void* const instance = Find<void* (*)()>(library, "_ZN24CameraPlatformInfoZelvan14CreateInstanceEv")();
    Find<void (*)(void*)>(library, "_ZN24CameraPlatformInfoZelvan18ExposureModuleInfoEv")(instance);
    EXPECT_EQ(dlclose(library), 0);
    return instance;
}

virtualphone::SensorDescription Sensor(int index, int deviceId) {
    virtualphone::SensorDescription sensor;
    sensor.deviceBits = tables::DeviceBits{1U << index};
    sensor.deviceId = tables::DeviceId{deviceId};
    sensor.eeprom.emplace();
    sensor.eeprom->image.resize(16384, 3);
    return sensor;
}

TEST(Unload, EachLoadStartsAfreshAndNothingStays) {
    virtualphone::PhoneDescription description;
    description.sensors = {Sensor(0, 7), Sensor(1, 1)};
    description.sensorAliases[tables::SensorIndex{7}] = {.deviceBits = tables::DeviceBits{1},
                                                         .deviceId = tables::DeviceId{7}};
    const virtualphone::TemporaryFolder root;
    const virtualphone::VirtualPhone phone(std::move(description), root.path());
    std::size_t lines = 0;
    for (std::size_t boot = 1; boot <= 3; ++boot) {
        ASSERT_NE(BootOnce(), nullptr);
        EXPECT_EQ(dlopen(PLUGIN, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded after boot " << boot;
        // Each boot reads both modules once, and says as much as the one before.
        EXPECT_EQ(phone.record().eepromReads.size(), 2 * boot);
        lines = boot == 1 ? phone.record().log.size() : lines;
        EXPECT_EQ(phone.record().log.size(), lines * boot);
    }
}

}  // namespace
