#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/IMetadata.h"
#include "record/BootRecord.h"
#include "record/Recorder.h"
#include "virtualphone/Api.h"
#include "virtualphone/CallFaults.h"
#include "virtualphone/DeviceFiles.h"
#include "virtualphone/PhoneDescription.h"

namespace virtualphone {

struct PhoneState;

/// A phone that is switched on: while it lives, every interface of platform/ and the Android log of this
/// process are its own, and all that they are used for goes to a sink of events. Without a phone they answer
/// as an empty platform.
///
///     record::Recorder recorder;
///     virtualphone::TemporaryFolder root;
///     auto description = virtualphone::ReadPhoneFile("halcyrion.json");
///     virtualphone::VirtualPhone phone(std::move(description), root.path(), recorder);
///     CameraPlatformInfoZelvan::CreateInstance()->ExposureModuleInfo();
///     for (const record::Event& event : recorder.events()) { ... }
///
/// A process has one phone at a time. Log lines may come from any thread; properties and metadata providers
/// are used by one thread at a time.
class VIRTUALPHONE_API VirtualPhone {
  public:
    /// Lays the phone's files under `root`, which is made if it is missing, and switches the phone on.
    /// @throws PhoneFileError when a file cannot be laid.
    /// @throws std::logic_error when this process has a phone already.
    /// @param events takes every use of the platform, in order; outlives the phone.
    VirtualPhone(PhoneDescription description, const std::filesystem::path& root, record::EventSink& events);
    /// The same with files that are laid already; they outlive the phone.
    /// @param failing calls that fail. Where a kind of the files' calls is among its keys, be it with no
    /// number, these calls are counted from the next one on that this process makes, and it can have no other
    /// such phone after this one: how a process of its own is used.
    /// @throws std::system_error, std::runtime_error where calls of files cannot be counted;
    /// std::invalid_argument for more than 64 of a kind of them.
    VirtualPhone(PhoneDescription description, const DeviceFiles& files, record::EventSink& events,
                 FailingCalls failing = {});
    /// Switches off. The files stay.
    ~VirtualPhone();
    VirtualPhone(const VirtualPhone&) = delete;
    VirtualPhone& operator=(const VirtualPhone&) = delete;

    /// Regular files whose content or permissions differ from those at start-up, by ascending path.
    /// Symbolic links are not followed, and what cannot be read is passed over.
    std::vector<record::ChangedFile> changedFiles() const;

    /// The present value of a property; empty when it is not set.
    std::optional<std::string> property(const std::string& name) const;

    /// What a provider holds now.
    const NSCam::IMetadata& staticMetadata(std::uint32_t provider) const;

    /// Calls of files so far; none where none are counted.
    std::optional<record::FileCalls> fileCalls() const;

    /// The folder that stands for the phone's "/", as an absolute path.
    const std::filesystem::path& root() const;

  private:
    void switchOn(PhoneDescription description, const DeviceFiles& files, record::EventSink& events,
                  FailingCalls failing);

    std::unique_ptr<DeviceFiles> mOwnFiles;
    std::unique_ptr<PhoneState> mState;
};

}  // namespace virtualphone
