// The library by itself: nothing of the plug-in is linked into this program.

#include <cstddef>
#include <dlfcn.h>
#include <pthread.h>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/PhoneBuilder.h"
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

/// The key that a thread's next value of its own would have: the lowest free one.
pthread_key_t NextKey() {
    pthread_key_t key{};
    EXPECT_EQ(pthread_key_create(&key, nullptr), 0);
    pthread_key_delete(key);
    return key;
}

TEST(Unload, EachLoadStartsAfreshAndNothingStays) {
    const virtualphone::TemporaryFolder root;
    record::Recorder recorder;
    const virtualphone::VirtualPhone phone(PhoneOf({{7, Eeprom({}, 3)}, {1, Eeprom({}, 3)}}).description(),
                                           root.path(), recorder);
    const pthread_key_t freeKey = NextKey();
    std::size_t lines = 0;
    for (std::size_t boot = 1; boot <= 3; ++boot) {
        ASSERT_NE(BootOnce(), nullptr);
        EXPECT_EQ(dlopen(PLUGIN, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded after boot " << boot;
        EXPECT_EQ(NextKey(), freeKey);
        // Each boot reads both modules once, and says as much as the one before.
        const std::vector<record::Event> events = recorder.events();
        EXPECT_EQ(record::EventsOf<record::EepromRead>(events).size(), 2 * boot);
        const std::size_t logged = record::EventsOf<record::LogLine>(events).size();
        lines = boot == 1 ? logged : lines;
        EXPECT_EQ(logged, lines * boot);
    }
}

}  // namespace
