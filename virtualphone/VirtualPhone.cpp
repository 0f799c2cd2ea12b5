#include "virtualphone/VirtualPhone.h"

#include <atomic>
#include <stdexcept>
#include <utility>

#include "virtualphone/PhoneState.h"

namespace virtualphone {

namespace {

std::atomic<PhoneState*> gCurrentPhone = nullptr;

}  // namespace

PhoneState* CurrentPhone() {
    return gCurrentPhone;
}

PhoneState::PhoneState(PhoneDescription phone, const std::filesystem::path& rootFolder,
                       record::EventSink& events)
    : description(std::move(phone)),
      sink(events),
      properties(description.properties),
      files(rootFolder, description.files),
      sensorList(description, sink),
      sensorDrivers(description),
      logicalDevices(description, sink),
      camCal(description, sink),
      providers(description, sink),
      watch(*this) {}

int PhoneState::update(NSCam::IMetadata::Tag_t tag, const NSCam::IMetadata::IEntry& entry) {
    const auto fault = description.faults.metadataUpdate.find(tag);
    const int result = fault == description.faults.metadataUpdate.end() ? 0 : fault->second;
    sink.take(
        record::TagStored{.tag = tag, .result = result, .count = static_cast<std::uint32_t>(entry.count())});
    return result;
}

VirtualPhone::VirtualPhone(PhoneDescription description, const std::filesystem::path& root,
                           record::EventSink& events) {
    if (gCurrentPhone != nullptr) {
        throw std::logic_error("this process has a virtual phone already");
    }
    mState = std::make_unique<PhoneState>(std::move(description), root, events);
    gCurrentPhone = mState.get();
}

VirtualPhone::~VirtualPhone() {
    gCurrentPhone = nullptr;
}

std::vector<record::ChangedFile> VirtualPhone::changedFiles() const {
    return mState->files.changed();
}

std::optional<std::string> VirtualPhone::property(const std::string& name) const {
    const auto found = mState->properties.find(name);
    return found == mState->properties.end() ? std::nullopt : std::optional(found->second);
}

const NSCam::IMetadata& VirtualPhone::staticMetadata(std::uint32_t provider) const {
    return mState->providers.provider(provider).staticCharacteristics();
}

const std::filesystem::path& VirtualPhone::root() const {
    return mState->files.root();
}

}  // namespace virtualphone
