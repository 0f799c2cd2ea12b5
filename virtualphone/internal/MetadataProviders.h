#pragma once

#include <cstdint>
#include <map>

#include "platform/IMetadataProvider.h"
#include "record/Recorder.h"
#include "virtualphone/PhoneDescription.h"

namespace virtualphone {

class MetadataProvider final : public NSCam::IMetadataProvider {
  public:
    /// @param before what the provider holds when the phone starts.
    MetadataProvider(std::uint32_t id, NSCam::IMetadata before, record::EventSink& sink)
        : mId(id), mSink(sink), mStatic(std::move(before)) {}

    const NSCam::IMetadata& staticCharacteristics() const override { return mStatic; }
    void mergeStaticMetadata(const NSCam::IMetadata& additional) override;

  private:
    std::uint32_t mId;
    record::EventSink& mSink;
    NSCam::IMetadata mStatic;
};

/// The providers of all ids; each comes into being when it is first asked for.
class MetadataProviders {
  public:
    MetadataProviders(const PhoneDescription& phone, record::EventSink& sink) : mPhone(phone), mSink(sink) {}
    MetadataProvider& provider(std::uint32_t id);

  private:
    const PhoneDescription& mPhone;
    record::EventSink& mSink;
    std::map<std::uint32_t, MetadataProvider> mProviders;
};

}  // namespace virtualphone
