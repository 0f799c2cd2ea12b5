#include "tables/PublishedProperties.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

#include "tables/CameraModules.h"

namespace tables {

namespace {

constexpr PublishedProperty kOfThePhone[] = {
#define PROPERTY(constant, name, publisher, value) {constant, -1, operation::publisher, value},
#include "tables/PublishedProperties.inc"
#undef PROPERTY
};

constexpr const char* kFuseIdValue =
    "90 characters, the same in both: maker (4), number of fuse id digits (4), fuse id in upper-case hex "
    "(32), "
    "filler (6), QR code length (4), QR code (14), filler (26); filler is `0`. Nothing for a module whose "
    "maker is "
    "unknown";
constexpr const char* kSensorInfoValue =
    "maker id, lens id and sensor id, `03, C2, 07`; `FF` is a byte that could not be read";
constexpr const char* kAFInfoValue = "two focus points, `300:123,10:456,`; nothing without autofocus";

constexpr std::size_t kCount = std::size(kOfThePhone) + 2 * kFuseIds.size() + 2 * kModuleRoles.size();

constexpr std::array<PublishedProperty, kCount> MakeTable() {
    std::array<PublishedProperty, kCount> table{};
    auto next = std::copy(std::begin(kOfThePhone), std::end(kOfThePhone), table.begin());
    for (const FuseIdOfRole& row : kFuseIds) {
        *next++ = {row.fuseId.propNameLong, row.roleId, operation::SetFuseIdProp, kFuseIdValue};
        *next++ = {row.fuseId.propName, row.roleId, operation::SetFuseIdProp, kFuseIdValue};
    }
    for (const ModuleRole& row : kModuleRoles) {
        *next++ = {row.sensorInfoProperty, row.roleId, operation::SetSensorInfoProp, kSensorInfoValue};
    }
    for (const ModuleRole& row : kModuleRoles) {
        *next++ = {row.afInfoProperty, row.roleId, operation::SetAFInfoProp, kAFInfoValue};
    }
    return table;
}

constexpr std::array<PublishedProperty, kCount> kProperties = MakeTable();

}  // namespace

std::span<const PublishedProperty> PublishedProperties() {
    return kProperties;
}

const PublishedProperty* FindPublishedProperty(std::string_view name) {
    const auto* const found = std::find_if(kProperties.begin(), kProperties.end(),
                                           [=](const PublishedProperty& row) { return name == row.name; });
    return found == kProperties.end() ? nullptr : found;
}

}  // namespace tables
