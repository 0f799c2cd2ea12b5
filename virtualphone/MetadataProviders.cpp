#include "virtualphone/internal/MetadataProviders.h"

#include <utility>

#include "virtualphone/MetadataValues.h"
#include "virtualphone/internal/MetadataInside.h"
#include "virtualphone/internal/PhoneState.h"

namespace virtualphone {

void MetadataProvider::mergeStaticMetadata(const NSCam::IMetadata& additional) {
    mSink.take(record::ProviderMerge{.provider = mId, .metadata = TagsOf(additional)});
    NSCam::IMetadata::Inside::merge(mStatic, additional);
}

MetadataProvider& MetadataProviders::provider(std::uint32_t id) {
    if (const auto found = mProviders.find(id); found != mProviders.end()) {
        return found->second;
    }
    NSCam::IMetadata before;
    const auto described = mPhone.staticMetadata.find(tables::ProviderId{id});
    if (described != mPhone.staticMetadata.end()) {
        for (const record::Tag& tag : described->second) {
            NSCam::IMetadata::Inside::store(before, EntryOf(tag));
        }
    }
    return mProviders.try_emplace(id, id, std::move(before), mSink).first->second;
}

}  // namespace virtualphone

NSCam::IMetadataProvider* NSCam::NSMetadataProviderManager::valueForByDeviceId(std::uint32_t deviceId) {
    virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    if (phone == nullptr) {
        return nullptr;
    }
    phone->sink.take(record::ProviderAsked{.provider = deviceId});
    return &phone->providers.provider(deviceId);
}
