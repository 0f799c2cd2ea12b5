#pragma once

#include "platform/IMetadata.h"
#include "record/TagValues.h"
#include "virtualphone/Api.h"

/// Between the platform's metadata, which offers what the plug-in uses, and values that can be read as a
/// whole.
namespace virtualphone {

VIRTUALPHONE_API record::TagValues ValuesOf(const NSCam::IMetadata::IEntry& entry);

/// All entries of a set.
VIRTUALPHONE_API record::TagSet TagsOf(const NSCam::IMetadata& metadata);

VIRTUALPHONE_API NSCam::IMetadata::IEntry EntryOf(const record::Tag& tag);

}  // namespace virtualphone
