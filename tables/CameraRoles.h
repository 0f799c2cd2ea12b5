#pragma once

/// Camera role ids: what a camera is on this phone, whatever index the platform gives it.
namespace tables::camera_role {

inline constexpr int kBackMain = 0;
inline constexpr int kFrontMain = 1;
inline constexpr int kBackTele = 20;
inline constexpr int kBackUltra = 21;
inline constexpr int kBackMacro = 22;
inline constexpr int kBackTel4x = 23;
inline constexpr int kBackMacro2x = 24;
inline constexpr int kBackDepth = 25;
inline constexpr int kFrontAux = 40;

/// Roles from here on belong to logical devices: no module, no EEPROM, no properties.
inline constexpr int kFirstLogicalRole = 60;
inline constexpr int kSat = 60;         ///< smooth zoom over wide, ultra-wide and tele
inline constexpr int kTeleBokeh = 61;   ///< portrait with the 2x tele as master
inline constexpr int kSatPartner = 62;  ///< named as a member of kSat, by no device
inline constexpr int kBokeh = 63;       ///< portrait with the wide as master
inline constexpr int kThreePartSat = 64;
/// Further logical roles that updaters know; no device of this phone carries them.
inline constexpr int kSecondSat = 80;
inline constexpr int kFrontBokeh = 81;

}  // namespace tables::camera_role
