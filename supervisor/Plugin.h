#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "record/BootRecord.h"

namespace supervisor {

/// A library that cannot be loaded or is no plug-in; the message is the loader's.
class PluginError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The plug-in as the camera stack takes it: a shared library with two entry points.
class Plugin {
  public:
    /// The plug-in that belongs to this program: ../lib of the program's folder.
    /// @throws PluginError where the system does not tell what that is.
    static std::filesystem::path DefaultLibrary();

    /// The build id of a plug-in that nobody loads, as `identity` has it.
    /// @return empty for a library that has none; nothing for a file that cannot be read as a library.
    static std::optional<std::string> BuildIdOf(const std::filesystem::path& library);

    /// @throws PluginError
    explicit Plugin(const std::filesystem::path& library);

    record::PluginIdentity identity() const;

    /// Makes the plug-in's instance and has it publish everything.
    /// @return what it threw; nothing after a run to the end.
    std::optional<std::string> run() const;

  private:
    struct Unload {
        void operator()(void* handle) const;
    };
    std::filesystem::path mLibrary;  ///< absolute
    std::unique_ptr<void, Unload> mHandle;
    void* (*mCreateInstance)() = nullptr;
    void (*mExposureModuleInfo)(void* instance) = nullptr;
};

}  // namespace supervisor
