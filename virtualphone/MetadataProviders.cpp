#include "virtualphone/MetadataProviders.h"

#include "virtualphone/PhoneState.h"

namespace virtualphone {

namespace {

using Entry = NSCam::IMetadata::IEntry;
using Memory = NSCam::IMetadata::Memory;

Entry ToEntry(const record::Tag& tag) {
    Entry entry(tag.tag);
    tag.values.visit([&entry](const auto items) {
        for (const auto& item : items) {
            if constexpr (std::is_same_v<decltype(item), const record::Blob&>) {
                entry.push_back(Memory(item.data(), item.size()));
            } else {
                entry.push_back(item);
            }
        }
    });
    return entry;
}

}  // namespace

void MetadataProvider::mergeStaticMetadata(const NSCam::IMetadata& additional) {
    mRecord.devices.push_back({.provider = mId, .metadata = additional});
    for (const NSCam::IMetadata::IEntry& entry : additional.entries()) {
        mStatic.update(entry.tag(), entry);
    }
}

MetadataProviders::MetadataProviders(const PhoneDescription& phone, Record& record) : mRecord(record) {
    for (const auto& [id, tags] : phone.staticMetadata) {
        for (const record::Tag& tag : tags) {
            provider(Number(id)).preset(ToEntry(tag));
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
