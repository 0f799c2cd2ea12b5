#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "tables/PublishingOperations.h"

/// Every tag that the plug-in publishes: constants, look-ups and docs/published.md come from one list.
/// Android's own tags have the numbers of its metadata definitions.

#define TAG(number, name, itemType, publisher, devices, value) inline constexpr std::uint32_t name = number;
#define WIDE_BOKEH_TAG(number, name, itemType, publisher, devices, value)
#include "tables/PublishedTags.inc"
#undef TAG
#undef WIDE_BOKEH_TAG

namespace tables {

/// The pair tags of the bokeh device whose master is the wide: they share their names with other numbers.
namespace wide_bokeh {

#define TAG(number, name, itemType, publisher, devices, value)
#define WIDE_BOKEH_TAG(number, name, itemType, publisher, devices, value) \
    inline constexpr std::uint32_t name = number;
#include "tables/PublishedTags.inc"
#undef TAG
#undef WIDE_BOKEH_TAG

}  // namespace wide_bokeh

/// What the items of a tag are.
enum class TagItemType { None, Int32, Int64, Float, Byte, Memory };

/// What the types are called, in their order.
inline constexpr std::array<const char*, 6> kTagItemTypeNames = {"none",  "int32", "int64",
                                                                 "float", "byte",  "memory"};

constexpr const char* NameOf(TagItemType type) {
    return kTagItemTypeNames[static_cast<std::size_t>(type)];
}

/// What is known of a published tag.
struct PublishedTag {
    std::uint32_t tag;
    TagItemType type;  ///< of its items
    const char* name;
    PublishingOperation operation;
    const char* devices;  ///< that have it, by their roles; "all": each one whose numbers the tables know
    const char* value;    ///< what its items say
};

/// All published tags in ascending order.
std::span<const PublishedTag> PublishedTags();

/// The row of a tag, or null for a tag that the plug-in does not publish.
const PublishedTag* FindPublishedTag(std::uint32_t tag);

/// The rows of a name, in ascending order: none for an unknown name, two for the pair tags of bokeh devices.
std::vector<const PublishedTag*> FindPublishedTags(std::string_view name);

}  // namespace tables
