#pragma once

#include "platform/IMetadata.h"
#include "record/TagValues.h"

/// What the virtual phone does to metadata beyond the interface's operations.
struct NSCam::IMetadata::Inside {
    static record::TagValues values(const IEntry& entry);
    static record::TagSet tags(const IMetadata& metadata);
    static IEntry entry(Tag_t tag, const record::TagValues& values);

    /// As `update`, but with no word to who watches updates.
    static void store(IMetadata& metadata, const IEntry& entry);
    static void merge(IMetadata& metadata, const IMetadata& additional);
};
