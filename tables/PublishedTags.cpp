#include "tables/PublishedTags.h"

#include <algorithm>
#include <iterator>

namespace tables {

namespace {

constexpr PublishedTag kTags[] = {
#define TAG(number, name, itemType, publisher, devices, value) \
    {number, TagItemType::itemType, #name, operation::publisher, devices, value},
#define WIDE_BOKEH_TAG TAG
#include "tables/PublishedTags.inc"
#undef TAG
#undef WIDE_BOKEH_TAG
};

constexpr bool Before(const PublishedTag& left, const PublishedTag& right) {
    return left.tag < right.tag;
}

static_assert(std::is_sorted(std::begin(kTags), std::end(kTags), Before));

}  // namespace

std::span<const PublishedTag> PublishedTags() {
    return kTags;
}

const PublishedTag* FindPublishedTag(std::uint32_t tag) {
    const auto found =
        std::lower_bound(std::begin(kTags), std::end(kTags), tag,
                         [](const PublishedTag& row, std::uint32_t wanted) { return row.tag < wanted; });
    return found == std::end(kTags) || found->tag != tag ? nullptr : found;
}

std::vector<const PublishedTag*> FindPublishedTags(std::string_view name) {
    std::vector<const PublishedTag*> found;
    for (const PublishedTag& row : kTags) {
        if (name == row.name) {
            found.push_back(&row);
        }
    }
    return found;
}

}  // namespace tables
