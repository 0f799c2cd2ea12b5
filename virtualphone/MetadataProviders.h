#pragma once

#include <cstdint>
#include <map>

#include "platform/IMetadataProvider.h"
#include "virtualphone/PhoneDescription.h"
#include "virtualphone/Record.h"

namespace virtualphone {

class MetadataProvider final : public NSCam::IMetadataProvider {
  public:
    MetadataProvider(std::uint32_t id, Record& record) : mId(id), mRecord(record) {}

    const NSCam::IMetadata& staticCharacteristics() const override { return mStatic; }
    void mergeStaticMetadata(const NSCam::IMetadata& additional) override;
    /// What the provider holds before the phone starts.
    void preset(const NSCam::IMetadata::IEntry& entry) { mStatic.update(entry.tag(), entry); }

  private:
    std::uint32_t mId;
    Record& mRecord;
    NSCam::IMetadata mStatic;
};

/// The providers of all ids; each comes into being when it is first asked for.
class MetadataProviders {
  public:
    MetadataProviders(const PhoneDescription& phone, Record& record);
    MetadataProvider& provider(std::uint32_t id);

  private:
    Record& mRecord;
    std::map<std::uint32_t, MetadataProvider> mProviders;
};

}  // namespace virtualphone
