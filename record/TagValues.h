#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tables/PublishedTags.h"

namespace record {

/// One item of type "memory".
using Blob = std::vector<std::uint8_t>;

/// The items of one metadata tag: none, or any number of one type.
///
/// Everything that depends on the type goes through `visit`:
///
///     std::size_t bytes = values.visit([](const auto& items) { return items.size() * sizeof(items[0]); });
class TagValues {
  public:
    /// The alternatives stand in the order of `tables::TagItemType`.
    using Items = std::variant<std::monostate, std::vector<std::int32_t>, std::vector<std::int64_t>,
                               std::vector<float>, std::vector<std::uint8_t>, std::vector<Blob>>;

    /// No items, of type None.
    TagValues() = default;
    /// A list of one of the five item types. An empty list counts as None.
    template <typename Item>
    explicit TagValues(std::vector<Item> items) {
        if (!items.empty()) {
            mItems.template emplace<std::vector<Item>>(std::move(items));
        }
    }

    tables::TagItemType type() const { return static_cast<tables::TagItemType>(mItems.index()); }
    std::size_t count() const;

    /// Calls `visitor` with the items as `std::span<const Item>`; for type None with an empty span of int32.
    template <typename Visitor>
    decltype(auto) visit(Visitor&& visitor) const {
        return std::visit(
            [&](const auto& items) -> decltype(auto) {
                using List = std::remove_cvref_t<decltype(items)>;
                if constexpr (std::is_same_v<List, std::monostate>) {
                    return visitor(std::span<const std::int32_t>());
                } else {
                    return visitor(std::span<const typename List::value_type>(items));
                }
            },
            mItems);
    }

    /// The items where they are of type `Item`, else an empty span.
    template <typename Item>
    std::span<const Item> as() const {
        const auto* const items = std::get_if<std::vector<Item>>(&mItems);
        return items == nullptr ? std::span<const Item>() : std::span<const Item>(*items);
    }

    /// The same items of the same type. Not a number equals itself here.
    friend bool operator==(const TagValues& left, const TagValues& right) {
        const auto floats = left.as<float>();
        const auto others = right.as<float>();
        return floats.empty()
                   ? left.mItems == right.mItems
                   : std::equal(floats.begin(), floats.end(), others.begin(), others.end(),
                                [](float a, float b) { return a == b || (std::isnan(a) && std::isnan(b)); });
    }

  private:
    Items mItems;
};

inline std::size_t TagValues::count() const {
    return visit([](const auto& items) { return items.size(); });
}

/// One tag of a metadata set.
struct Tag {
    std::uint32_t tag = 0;
    TagValues values;

    friend bool operator==(const Tag&, const Tag&) = default;
};

/// A metadata set in ascending tag order.
using TagSet = std::vector<Tag>;

}  // namespace record
