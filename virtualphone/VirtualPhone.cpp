#include "virtualphone/VirtualPhone.h"

#include <stdexcept>
#include <utility>

#include "virtualphone/PhoneState.h"

namespace virtualphone {

namespace {

PhoneState* gCurrentPhone = nullptr;

}  // namespace

PhoneState* CurrentPhone() {
    return gCurrentPhone;
}

PhoneState::PhoneState(PhoneDescription phone, const std::filesystem::path& rootFolder)
    : description(std::move(phone)),
      properties(description.properties),
      files(rootFolder, description.files),
      sensorList(description),
      sensorDrivers(description),
      logicalDevices(description),
      camCal(description, record),
      providers(description, record),
      log(record) {}

VirtualPhone::VirtualPhone(PhoneDescription description, const std::filesystem::path& root) {
    if (gCurrentPhone != nullptr) {
        throw std::logic_error("this process has a virtual phone already");
    }
    mState = std::make_unique<PhoneState>(std::move(description), root);
    gCurrentPhone = mState.get();
}

VirtualPhone::~VirtualPhone() {
    gCurrentPhone = nullptr;
}

const Record& VirtualPhone::record() const {
    return mState->record;
}

std::vector<ChangedFile> VirtualPhone::changedFiles() const {
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
