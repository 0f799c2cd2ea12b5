#include "supervisor/Plugin.h"

#include <dlfcn.h>
#include <exception>

// A member function is called as what it is to the linker: a function with `this` as its first argument.
// Clang's sanitizer compares C++ types and objects.
#if defined(__clang__)
#define CALLS_BY_LINKER_NAME __attribute__((no_sanitize("function")))
#else
#define CALLS_BY_LINKER_NAME
#endif

namespace supervisor {

namespace {

/// The message of the latest failure of the loader.
std::string LoaderMessage(const std::string& otherwise) {
    const char* message = dlerror();
    return message == nullptr ? otherwise : message;
}

template <typename Function>
Function Find(void* handle, const char* symbol) {
    void* address = dlsym(handle, symbol);
    if (address == nullptr) {
        throw PluginError(LoaderMessage(std::string("the plug-in's ") + symbol + " is null"));
    }
    return reinterpret_cast<Function>(address);
}

}  // namespace

void Plugin::Unload::operator()(void* handle) const {
    dlclose(handle);
}

std::filesystem::path Plugin::DefaultLibrary() {
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    return program.parent_path().parent_path() / "lib" / "libcameraplatforminfozelvan.so";
}

Plugin::Plugin(const std::filesystem::path& library)
    // Absolute: a bare name would send the loader through the system's own folders.
    : mHandle(dlopen(std::filesystem::absolute(library).c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!mHandle) {
        throw PluginError(LoaderMessage("cannot load " + library.string()));
    }
    mCreateInstance = Find<void* (*)()>(mHandle.get(), "_ZN24CameraPlatformInfoZelvan14CreateInstanceEv");
    mExposureModuleInfo =
        Find<void (*)(void*)>(mHandle.get(), "_ZN24CameraPlatformInfoZelvan18ExposureModuleInfoEv");
}

CALLS_BY_LINKER_NAME std::optional<std::string> Plugin::run() const {
    try {
        mExposureModuleInfo(mCreateInstance());
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "an exception that is no std::exception";
    }
    return std::nullopt;
}

}  // namespace supervisor
