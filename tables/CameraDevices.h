#pragma once

#include <array>
#include <span>

#include "tables/CameraRoles.h"

/// One camera device. A row that a map subscript made has role 0 and null texts.
struct RoleIdDesc {
    int roleId;
    const char* sensorNames;  ///< sensor chips, joined by ";", master first
    const char* drvName;      ///< the platform's name of the device
};

namespace tables {

/// A camera device and the number that the platform gives it.
struct CameraDevice {
    int deviceId;
    RoleIdDesc camera;
};

/// The camera devices of this phone by device id. Device 0 is the three-part SAT device; the plain back wide
/// sensor, which is sensor 0, is device 7.
inline constexpr std::array<CameraDevice, 8> kCameraDevices = {{
    {0, {camera_role::kThreePartSat, "imx707;ov13b10", "SENSOR_DRVNAME_HALCYRION_BACK_3PARTSAT"}},
    {1, {camera_role::kFrontMain, "imx596", "SENSOR_DRVNAME_HALCYRION_FRONT_MAIN"}},
    {2, {camera_role::kBackTele, "ov50d", "SENSOR_DRVNAME_HALCYRION_BACK_TELE"}},
    {3, {camera_role::kBackUltra, "ov13b10", "SENSOR_DRVNAME_HALCYRION_BACK_ULTRA"}},
    {4, {camera_role::kSat, "imx707;ov13b10;ov50d", "SENSOR_DRVNAME_HALCYRION_BACK_SAT"}},
    {5, {camera_role::kTeleBokeh, "ov50d;imx707", "SENSOR_DRVNAME_HALCYRION_2XBACK_BOKEH"}},
    {6, {camera_role::kBokeh, "imx707;ov13b10", "SENSOR_DRVNAME_HALCYRION_BACK_BOKEH"}},
    {7, {camera_role::kBackMain, "imx707", "SENSOR_DRVNAME_HALCYRION_BACK_WIDE"}},
}};

/// The physical sensors alone, numbered without the logical devices.
inline constexpr std::array<CameraDevice, 4> kPhysicalCameraDevices = {{
    {0, kCameraDevices[7].camera},
    {1, kCameraDevices[1].camera},
    {2, kCameraDevices[2].camera},
    {3, kCameraDevices[3].camera},
}};

/// The roles that a logical role names as its members, in the order in which they are published.
struct MemberRoles {
    int roleId;
    std::span<const int> members;
};

inline constexpr std::array kSatMembers = {camera_role::kSat, camera_role::kSatPartner};
inline constexpr std::array kSecondSatMembers = {camera_role::kSecondSat};
inline constexpr std::array<MemberRoles, 2> kMemberRoles = {{
    {camera_role::kSat, kSatMembers},
    {camera_role::kSecondSat, kSecondSatMembers},
}};

}  // namespace tables
