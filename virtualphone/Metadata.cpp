#include <atomic>
#include <type_traits>
#include <utility>

#include <android/log.h>

#include "platform/IMetadata.h"
#include "virtualphone/MetadataValues.h"
#include "virtualphone/internal/MetadataInside.h"
#include "virtualphone/internal/MetadataWatch.h"

namespace {

std::atomic<virtualphone::MetadataWatch*> gWatch = nullptr;

}  // namespace

namespace NSCam {

IMetadata::Memory::Memory(const void* bytes, std::size_t size)
    : mBytes(static_cast<const std::uint8_t*>(bytes), static_cast<const std::uint8_t*>(bytes) + size) {}

std::uint8_t* IMetadata::Memory::editArray() {
    return mBytes.data();
}

void IMetadata::Memory::resize(std::size_t size) {
    mBytes.resize(size);
}

void IMetadata::Memory::append(const Memory& other) {
    // By index and not by iterator: a blob may be appended to itself.
    const std::size_t added = other.mBytes.size();
    mBytes.reserve(mBytes.size() + added);
    for (std::size_t i = 0; i < added; ++i) {
        mBytes.push_back(other.mBytes[i]);
    }
}

IMetadata::IEntry::IEntry(Tag_t tag) : mTag(tag) {}

IMetadata::Tag_t IMetadata::IEntry::tag() const {
    return mTag;
}

std::size_t IMetadata::IEntry::count() const {
    return std::visit(
        [](const auto& items) -> std::size_t {
            if constexpr (std::is_same_v<decltype(items), const std::monostate&>) {
                return 0;
            } else {
                return items.size();
            }
        },
        mItems);
}

bool IMetadata::IEntry::isEmpty() const {
    return count() == 0;
}

template <typename Item>
void IMetadata::IEntry::append(const Item& item) {
    if (auto* items = std::get_if<std::vector<Item>>(&mItems)) {
        items->push_back(item);
    } else if (isEmpty()) {
        mItems.emplace<std::vector<Item>>().push_back(item);
    } else {
        __android_log_print(ANDROID_LOG_ERROR, "VirtualPhone",
                            "tag 0x%X: dropped an item of another type than the first", mTag);
    }
}

template <typename Item>
Item IMetadata::IEntry::itemAt(std::size_t index) const {
    const auto* items = std::get_if<std::vector<Item>>(&mItems);
    return items != nullptr && index < items->size() ? (*items)[index] : Item{};
}

#define INSTANTIATE_ITEM(Item)                                       \
    template void IMetadata::IEntry::append<Item>(const Item& item); \
    template Item IMetadata::IEntry::itemAt<Item>(std::size_t index) const;

INSTANTIATE_ITEM(std::int32_t)
INSTANTIATE_ITEM(std::int64_t)
INSTANTIATE_ITEM(float)
INSTANTIATE_ITEM(unsigned char)
INSTANTIATE_ITEM(IMetadata::Memory)

#undef INSTANTIATE_ITEM

int IMetadata::update(Tag_t tag, const IEntry& entry) {
    if (virtualphone::MetadataWatch* const watch = gWatch) {
        if (const int refusal = watch->update(tag, entry); refusal != 0) {
            return refusal;
        }
    }
    mEntries.insert_or_assign(tag, entry).first->second.mTag = tag;
    return 0;
}

IMetadata::IEntry IMetadata::entryFor(Tag_t tag) const {
    const auto found = mEntries.find(tag);
    return found == mEntries.end() ? IEntry(tag) : found->second;
}

record::TagValues IMetadata::Inside::values(const IEntry& entry) {
    return std::visit(
        [](const auto& items) -> record::TagValues {
            using Items = std::remove_cvref_t<decltype(items)>;
            if constexpr (std::is_same_v<Items, std::monostate>) {
                return {};
            } else if constexpr (std::is_same_v<Items, std::vector<Memory>>) {
                std::vector<record::Blob> blobs;
                blobs.reserve(items.size());
                for (const Memory& memory : items) {
                    blobs.push_back(memory.mBytes);
                }
                return record::TagValues(std::move(blobs));
            } else {
                return record::TagValues(items);
            }
        },
        entry.mItems);
}

record::TagSet IMetadata::Inside::tags(const IMetadata& metadata) {
    record::TagSet tags;
    tags.reserve(metadata.mEntries.size());
    for (const auto& [tag, entry] : metadata.mEntries) {
        tags.push_back({.tag = tag, .values = values(entry)});
    }
    return tags;
}

IMetadata::IEntry IMetadata::Inside::entry(Tag_t tag, const record::TagValues& values) {
    IEntry entry(tag);
    values.visit([&entry](const auto& items) {
        using Item = std::remove_cvref_t<decltype(items[0])>;
        for (const Item& item : items) {
            if constexpr (std::is_same_v<Item, record::Blob>) {
                entry.push_back(Memory(item.data(), item.size()));
            } else {
                entry.push_back(item);
            }
        }
    });
    return entry;
}

void IMetadata::Inside::store(IMetadata& metadata, const IEntry& entry) {
    metadata.mEntries.insert_or_assign(entry.mTag, entry);
}

void IMetadata::Inside::merge(IMetadata& metadata, const IMetadata& additional) {
    for (const auto& [tag, entry] : additional.mEntries) {
        store(metadata, entry);
    }
}

}  // namespace NSCam

namespace virtualphone {

record::TagValues ValuesOf(const NSCam::IMetadata::IEntry& entry) {
    return NSCam::IMetadata::Inside::values(entry);
}

record::TagSet TagsOf(const NSCam::IMetadata& metadata) {
    return NSCam::IMetadata::Inside::tags(metadata);
}

NSCam::IMetadata::IEntry EntryOf(const record::Tag& tag) {
    return NSCam::IMetadata::Inside::entry(tag.tag, tag.values);
}

MetadataWatchInstalled::MetadataWatchInstalled(MetadataWatch& watch) {
    gWatch = &watch;
}

MetadataWatchInstalled::~MetadataWatchInstalled() {
    gWatch = nullptr;
}

}  // namespace virtualphone
