#pragma once

#include <cstdint>

#include "platform/IMetadata.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"

/// Duplicates the outputs of one format as another in a list that the metadata holds.
template <typename Item>
void DuplicateFormat(NSCam::IMetadata& meta, NSCam::IMetadata::Tag_t tag, std::int64_t from,
                     std::int64_t to) {
    NSCam::IMetadata::IEntry entry = meta.entryFor(tag);
    CameraPlatformInfoZelvan::converter<Item>::copy(static_cast<Item>(from), static_cast<Item>(to), entry);
    meta.update(tag, entry);
}
