#pragma once

/// Bits of the data-bin exist mask: which calibration data this phone has.
inline constexpr unsigned long kDualCameraBin = 1UL << 0;
inline constexpr unsigned long kOisBin = 1UL << 4;

constexpr unsigned long WithBin(unsigned long mask, unsigned long bin, bool exists) {
    return exists ? mask | bin : mask & ~bin;
}
