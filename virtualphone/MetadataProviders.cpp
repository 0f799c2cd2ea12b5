#include "virtualphone/MetadataProviders.h"

#include "virtualphone/PhoneState.h"

namespace virtualphone {

void MetadataProvider::mergeStaticMetadata(const NSCam::IMetadata& additional) {
    mRecord.devices.push_back({.provider = mId, .metadata = additional});
    for (const NSCam::IMetadata::IEntry& entry : additional.entries()) {
        mStatic.update(entry.tag(), entry);
    }
}

MetadataProviders::MetadataProviders(const PhoneDescription& phone, Record& record) : mRecord(record) {
    for (const auto& [id, entries] : phone.staticMetadata) {
        for (const NSCam::IMetadata::IEntry& entry : entries) {
            provider(id).preset(entry);
        }
    }
}

MetadataProvider& MetadataProviders::provider(std::uint32_t id) {
    return mProviders.try_emplace(id, id, mRecord).first->second;
}

}  // namespace virtualphone

NSCam::IMetadataProvider* NSCam::NSMetadataProviderManager::valueForByDeviceId(std::uint32_t deviceId) {
    virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    return phone == nullptr ? nullptr : &phone->providers.provider(deviceId);
}
