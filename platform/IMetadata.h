#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <type_traits>
#include <variant>
#include <vector>

#include "platform/Api.h"

namespace NSCam {

/// A set of camera metadata: one entry a tag, ordered by tag, each entry a list of items of one type.
/// A plain value: copies are independent of each other.
class PLATFORM_API IMetadata {
  public:
    using Tag_t = std::uint32_t;
    /// For the platform's own use.
    struct Inside;

    /// A byte blob that stands as one item of an entry.
    class PLATFORM_API Memory {
      public:
        Memory() = default;
        Memory(const void* bytes, std::size_t size);

        /// The bytes for writing; valid until the next `resize` or `append`.
        std::uint8_t* editArray();
        /// New bytes are zero.
        void resize(std::size_t size);
        void append(const Memory& other);

      private:
        friend Inside;

        std::vector<std::uint8_t> mBytes;
    };

    /// The items of one tag. The first item decides the entry's type; a later item of another type is
    /// dropped, and the platform logs it.
    class PLATFORM_API IEntry {
      public:
        explicit IEntry(Tag_t tag);

        Tag_t tag() const;
        std::size_t count() const;
        bool isEmpty() const;

        /// Appends `value`, stored as an `Item`: std::int32_t, std::int64_t, float, unsigned char or Memory.
        template <typename Value, typename Item = Value>
        void push_back(const Value& value) {
            if constexpr (std::is_same_v<Value, Item>) {
                append(value);
            } else {
                append(static_cast<Item>(value));
            }
        }

        /// The item at `index`; zero (an empty Memory) beyond the end or where the entry has another type.
        template <typename Item>
        Item itemAt(std::size_t index) const;

      private:
        friend IMetadata;  // an entry takes the tag that it is stored under
        friend Inside;

        template <typename Item>
        void append(const Item& item);

        Tag_t mTag;
        std::variant<std::monostate, std::vector<std::int32_t>, std::vector<std::int64_t>, std::vector<float>,
                     std::vector<unsigned char>, std::vector<Memory>>
            mItems;
    };

    /// Stores `entry` under `tag` and replaces what the tag held.
    /// @return 0, or an error code; then the tag keeps what it held.
    int update(Tag_t tag, const IEntry& entry);

    /// A copy of the entry of `tag`; an empty one where the tag is absent.
    IEntry entryFor(Tag_t tag) const;

  private:
    std::map<Tag_t, IEntry> mEntries;
};

}  // namespace NSCam
