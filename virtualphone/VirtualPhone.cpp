#include "virtualphone/VirtualPhone.h"

#include <atomic>
#include <stdexcept>
#include <utility>

#include "virtualphone/internal/FileCalls.h"
#include "virtualphone/internal/PhoneState.h"

namespace virtualphone {

namespace {

std::atomic<PhoneState*> gCurrentPhone = nullptr;

/// What a refused update answers.
constexpr int kRefusedUpdate = -5;

void RefuseSecond() {
    if (gCurrentPhone != nullptr) {
        throw std::logic_error("this process has a virtual phone already");
    }
}

bool HasFileCalls(const FailingCalls& failing) {
    return failing.contains(Call::FileOpened) || failing.contains(Call::FileRead) ||
           failing.contains(Call::FileWritten);
}

}  // namespace

PhoneState* CurrentPhone() {
    return gCurrentPhone;
}

bool Fails(Call call) {
    PhoneState* const phone = gCurrentPhone;
    if (phone == nullptr || phone->failing.empty()) {
        return false;
    }
    const std::uint64_t number = phone->calls[call]++;
    const auto failing = phone->failing.find(call);
    return failing != phone->failing.end() && failing->second.contains(number);
}

PhoneState::PhoneState(PhoneDescription phone, const DeviceFiles& laid, record::EventSink& events,
                       FailingCalls failingCalls)
    : description(std::move(phone)),
      failing(std::move(failingCalls)),
      sink(events),
      properties(description.properties),
      files(laid),
      sensorList(description, sink),
      sensorDrivers(description),
      logicalDevices(description, sink),
      camCal(description, sink),
      providers(description, sink),
      watch(*this) {}

int PhoneState::update(NSCam::IMetadata::Tag_t tag, const NSCam::IMetadata::IEntry& entry) {
    const auto fault = description.faults.metadataUpdate.find(tag);
    const int result = Fails(Call::TagStored)                             ? kRefusedUpdate
                       : fault == description.faults.metadataUpdate.end() ? 0
                                                                          : fault->second;
    sink.take(
        record::TagStored{.tag = tag, .result = result, .count = static_cast<std::uint32_t>(entry.count())});
    return result;
}

VirtualPhone::VirtualPhone(PhoneDescription description, const std::filesystem::path& root,
                           record::EventSink& events) {
    RefuseSecond();
    mOwnFiles = std::make_unique<DeviceFiles>(root, description.files);
    switchOn(std::move(description), *mOwnFiles, events, {});
}

VirtualPhone::VirtualPhone(PhoneDescription description, const DeviceFiles& files, record::EventSink& events,
                           FailingCalls failing) {
    RefuseSecond();
    switchOn(std::move(description), files, events, std::move(failing));
}

void VirtualPhone::switchOn(PhoneDescription description, const DeviceFiles& files, record::EventSink& events,
                            FailingCalls failing) {
    mState = std::make_unique<PhoneState>(std::move(description), files, events, std::move(failing));
    if (HasFileCalls(mState->failing)) {
        WatchFileCalls(files.root(), mState->failing);
    }
    gCurrentPhone = mState.get();
}

VirtualPhone::~VirtualPhone() {
    gCurrentPhone = nullptr;
}

std::vector<record::ChangedFile> VirtualPhone::changedFiles() const {
    record::BootRecord boot;
    mState->files.tell(boot);
    return std::move(boot.files);
}

std::optional<std::string> VirtualPhone::property(const std::string& name) const {
    const auto found = mState->properties.find(name);
    return found == mState->properties.end() ? std::nullopt : std::optional(found->second);
}

const NSCam::IMetadata& VirtualPhone::staticMetadata(std::uint32_t provider) const {
    return mState->providers.provider(provider).staticCharacteristics();
}

std::optional<record::FileCalls> VirtualPhone::fileCalls() const {
    return CountedFileCalls();
}

const std::filesystem::path& VirtualPhone::root() const {
    return mState->files.root();
}

}  // namespace virtualphone
