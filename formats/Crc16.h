#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

namespace formats {

/// The check value of the calibration files: CRC-16/KERMIT of the CRC catalogue (also CRC-16/CCITT-TRUE),
/// that is width 16, polynomial 0x1021, initial value 0, reflected input and output, no final XOR. Its check
/// value over the nine characters "123456789" is 0x2189. The files store it high byte first.
/// @return 0 for no bytes.
std::uint16_t Crc16Kermit(std::span<const std::uint8_t> bytes);

/// The bits of an unsigned number in reverse order: bit 0 becomes the highest.
template <typename Unsigned>
constexpr Unsigned ReverseBits(Unsigned value) {
    static_assert(std::is_unsigned_v<Unsigned>);
    Unsigned reversed = 0;
    for (std::size_t bit = 0; bit < 8 * sizeof(Unsigned); ++bit) {
        reversed = static_cast<Unsigned>(reversed * 2U | ((value >> bit) & 1U));
    }
    return reversed;
}

}  // namespace formats
