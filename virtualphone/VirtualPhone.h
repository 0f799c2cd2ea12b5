#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/IMetadata.h"
#include "virtualphone/Api.h"
#include "virtualphone/PhoneDescription.h"
#include "virtualphone/Record.h"

namespace virtualphone {

struct PhoneState;

/// A phone that is switched on: while it lives, every interface of platform/ and the Android log of this
/// process are its own, and it records what they are used for. Without one they answer as an empty platform.
///
///     virtualphone::TemporaryFolder root;
///     virtualphone::VirtualPhone phone(virtualphone::ReadPhoneFile("halcyrion.json"), root.path());
///     CameraPlatformInfoZelvan::CreateInstance()->ExposureModuleInfo();
///     for (const auto& property : phone.record().properties) { ... }
///
/// A process has one phone at a time, and uses it from one thread.
class VIRTUALPHONE_API VirtualPhone {
  public:
    /// Lays the phone's files under `root`, which is made if it is missing, and switches the phone on.
    /// @throws PhoneFileError when a file cannot be laid.
    /// @throws std::logic_error when this process has a phone already.
    VirtualPhone(PhoneDescription description, const std::filesystem::path& root);
    /// Switches off. The files stay.
    ~VirtualPhone();
    VirtualPhone(const VirtualPhone&) = delete;
    VirtualPhone& operator=(const VirtualPhone&) = delete;

    const Record& record() const;

    /// Regular files whose content or permissions differ from those at start-up, by ascending path.
    /// Symbolic links are not followed.
    /// @throws PhoneFileError when a file cannot be read.
    std::vector<ChangedFile> changedFiles() const;

    /// The present value of a property; empty when it is not set.
    std::optional<std::string> property(const std::string& name) const;

    /// What a provider holds now.
    const NSCam::IMetadata& staticMetadata(std::uint32_t provider) const;

    /// The folder that stands for the phone's "/", as an absolute path.
    const std::filesystem::path& root() const;

  private:
    std::unique_ptr<PhoneState> mState;
};

}  // namespace virtualphone
