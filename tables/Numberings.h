#pragma once

#include <cstdint>
#include <type_traits>

/// The numberings of this phone that must not be mixed, each a type of its own; docs/architecture.md has the
/// glossary. The class and the platform's interfaces pass plain integers: a number gets its type where it
/// enters a helper and loses it (`Number`) where it leaves.
namespace tables {

/// What a camera is on this phone: 0 back main, 20 tele, 60 SAT ...; -1: none. Constants in camera_role.
enum class RoleId : int {};
/// The platform's number of a camera device, key of `DeviceId2RoleId`; -1: none.
enum class DeviceId : int {};
/// Position in the platform's sensor list, 0 to count - 1.
enum class SensorIndex : int {};
/// A mask in which bit n stands for sensor index n.
enum class DeviceBits : std::uint32_t {};
/// Position in the logical device list, 0 to count - 1.
enum class LogicalIndex : int {};
/// What the logical device list calls a sensor that it names as the member of a device.
enum class MemberSensorId : int {};
/// What the logical device list answers for a member: the last byte of a physical sensor's provider id.
enum class DeviceIndex : int {};
/// The platform's key of a metadata provider: a logical index, or a member's unique id.
enum class ProviderId : std::uint32_t {};
/// The number that a sensor chip reports of itself, such as 0x0707.
enum class ChipSensorId : std::uint32_t {};
/// Who built a module: the byte at offset 1 of its memory.
enum class MakerId : int {};

/// The plain number.
template <typename Numbering>
constexpr std::underlying_type_t<Numbering> Number(Numbering value) {
    static_assert(std::is_enum_v<Numbering>);
    return static_cast<std::underlying_type_t<Numbering>>(value);
}

}  // namespace tables
