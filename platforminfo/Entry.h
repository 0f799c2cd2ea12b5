#pragma once

#include <initializer_list>

#include "platform/IMetadata.h"

/// An entry of `tag` that holds `items`, each stored as an `Item`.
template <typename Item, typename Items>
NSCam::IMetadata::IEntry MakeEntry(NSCam::IMetadata::Tag_t tag, const Items& items) {
    NSCam::IMetadata::IEntry entry(tag);
    for (const auto& item : items) {
        entry.push_back<Item>(item);
    }
    return entry;
}

template <typename Item>
NSCam::IMetadata::IEntry MakeEntry(NSCam::IMetadata::Tag_t tag, std::initializer_list<Item> items) {
    return MakeEntry<Item, std::initializer_list<Item>>(tag, items);
}
