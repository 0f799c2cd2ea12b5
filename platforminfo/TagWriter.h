#pragma once

#include <initializer_list>
#include <iterator>

#include <android/log.h>

#include "platform/IMetadata.h"

/// An entry of `tag` that holds `items`, each stored as an `Item`.
template <typename Item, typename Items>
NSCam::IMetadata::IEntry MakeEntry(NSCam::IMetadata::Tag_t tag, const Items& items) {
    NSCam::IMetadata::IEntry entry(tag);
    entry.reserve<Item>(std::size(items));
    for (const auto& item : items) {
        entry.push_back<Item>(item);
    }
    return entry;
}

template <typename Item>
NSCam::IMetadata::IEntry MakeEntry(NSCam::IMetadata::Tag_t tag, std::initializer_list<Item> items) {
    return MakeEntry<Item, std::initializer_list<Item>>(tag, items);
}

/// How a refused update is logged: `lead`, then ":%d err:%d" with the tag and the result, then `tail`.
struct UpdateFailure {
    const char* lead = "ZV IMetadata::update(), tag";
    const char* tail = "";
    int priority = ANDROID_LOG_ERROR;
};

/// Stores an entry under its tag and logs a refusal in the name of `function`.
/// @return 0, or the platform's error code.
int UpdateTag(const char* function, NSCam::IMetadata& meta, const NSCam::IMetadata::IEntry& entry,
              const UpdateFailure& failure = {});

/// The log line of a refused update.
void LogUpdateFailure(const char* function, const UpdateFailure& failure, NSCam::IMetadata::Tag_t tag,
                      int error);
