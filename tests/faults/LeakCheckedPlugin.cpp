#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <sanitizer/lsan_interface.h>

// PLUGIN is a path; the build defines it.

/// The plug-in, and after each boot a look for what it has leaked: a phone's process leaves without one.
class __attribute__((visibility("default"))) CameraPlatformInfoZelvan {
  public:
    static CameraPlatformInfoZelvan* CreateInstance();
    void ExposureModuleInfo();
};

namespace {

void* Symbol(const char* name) {
    static void* const library = dlopen(PLUGIN, RTLD_NOW | RTLD_LOCAL);
    void* const symbol = library == nullptr ? nullptr : dlsym(library, name);
    if (symbol == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        std::abort();
    }
    return symbol;
}

}  // namespace

CameraPlatformInfoZelvan* CameraPlatformInfoZelvan::CreateInstance() {
    return reinterpret_cast<CameraPlatformInfoZelvan* (*)()>(
        Symbol("_ZN24CameraPlatformInfoZelvan14CreateInstanceEv"))();
}

void CameraPlatformInfoZelvan::ExposureModuleInfo() {
    reinterpret_cast<void (*)(CameraPlatformInfoZelvan*)>(
        Symbol("_ZN24CameraPlatformInfoZelvan18ExposureModuleInfoEv"))(this);
    if (__lsan_do_recoverable_leak_check() != 0) {
        std::abort();
    }
}
