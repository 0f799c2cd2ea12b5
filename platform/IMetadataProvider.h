#pragma once

#include <cstdint>

#include "platform/Api.h"
#include "platform/IMetadata.h"

namespace NSCam {

/// Keeps the static metadata of one camera device.
class PLATFORM_API IMetadataProvider {
  public:
    /// What the framework and applications see of the device.
    virtual const IMetadata& staticCharacteristics() const = 0;

    /// Merges every entry of `additional` into the static characteristics, replacing tags of the same id.
    /// The provider keeps its own copy.
    virtual void mergeStaticMetadata(const IMetadata& additional) = 0;

  protected:
    ~IMetadataProvider() = default;
};

namespace NSMetadataProviderManager {

/// The provider of a device: a logical device by its index, a physical sensor of a logical device by
/// ((logical index & 0xFFFF) << 16) | (sensor id << 8) | sensor device index.
/// The platform has a provider for every device that it lists.
PLATFORM_API IMetadataProvider* valueForByDeviceId(std::uint32_t deviceId);

}  // namespace NSMetadataProviderManager
}  // namespace NSCam
