#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/Describe.h"
#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

/// Calibration files by the byte, made without any of the code under test, and the phone that they are for.

using Lines = std::vector<std::string>;

inline Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// CRC-16/KERMIT by its definition, one bit at a time.
inline unsigned BitwiseCrc(const std::uint8_t* bytes, std::size_t size) {
    unsigned crc = 0;
    for (std::size_t bit = 0; bit < 8 * size; ++bit) {
        const unsigned next = static_cast<unsigned>(bytes[bit / 8]) >> bit % 8 & 1U;
        crc = (crc << 1 & 0xFFFFU) ^ ((crc >> 15) == next ? 0 : 0x1021);
    }
    unsigned reversed = 0;
    for (int bit = 0; bit < 16; ++bit) {
        reversed |= (crc >> bit & 1U) << (15 - bit);
    }
    return reversed;
}

inline Bytes BigEndian(unsigned value, int size) {
    Bytes bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    return bytes;
}

inline Bytes WithCrc(const Bytes& bytes) {
    return bytes + BigEndian(BitwiseCrc(bytes.data(), bytes.size()), 2);
}

/// A block in which no two neighbours are alike.
inline Bytes Block(std::size_t size, unsigned start = 1) {
    Bytes block;
    for (unsigned i = 0; i < size; ++i) {
        block.push_back(static_cast<std::uint8_t>(start + 7 * i));
    }
    return block;
}

inline Bytes Counted(const Bytes& fuseId) {
    return BigEndian(static_cast<unsigned>(fuseId.size()), 1) + fuseId;
}

/// A dual-camera file as the factory makes it, without a CRC.
inline Bytes DualFile(const Bytes& master, const Bytes& slave, const Bytes& block) {
    return Counted(master) + Counted(slave) + block;
}

/// A phone with the four sensors at their usual places: roles 0, 1, 20 and 21 are sensors 0 to 3.
inline PhoneBuilder RearPhone(const std::optional<Bytes>& wideEeprom = {}) {
    return PhoneOf({{7, wideEeprom}, {1}, {2}, {3}});
}

/// The same with the fuse ids of its modules.
inline PhoneBuilder RearPhoneWithFuseIds() {
    return RearPhone()
        .property("vendor.camera.sensor.w.fuseID", "semc0004AABB")
        .property("vendor.camera.sensor.f.fuseID", "_aac0004F00D")
        .property("vendor.camera.sensor.t.fuseID", "sunn0004CCDD")
        .property("vendor.camera.sensor.u.fuseID", "ofil000401020304");
}
