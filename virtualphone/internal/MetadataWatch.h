#pragma once

#include "platform/IMetadata.h"

namespace virtualphone {

/// Decides and sees the updates of metadata sets.
///
/// A set is a plain value that belongs to no phone, and an update may still be refused by one that is
/// switched on. This is the door between the two: `IMetadata::update` asks the watcher that is installed.
/// Without one every update succeeds.
class MetadataWatch {
  public:
    /// Called for every update of any set, from the thread that updates.
    /// @return 0, or the error code with which the update is refused; then nothing is stored.
    virtual int update(NSCam::IMetadata::Tag_t tag, const NSCam::IMetadata::IEntry& entry) = 0;

  protected:
    ~MetadataWatch() = default;
};

/// The watcher of this process while this object lives. One at a time.
class MetadataWatchInstalled {
  public:
    explicit MetadataWatchInstalled(MetadataWatch& watch);
    ~MetadataWatchInstalled();
    MetadataWatchInstalled(const MetadataWatchInstalled&) = delete;
    MetadataWatchInstalled& operator=(const MetadataWatchInstalled&) = delete;
};

}  // namespace virtualphone
