#include "formats/Crc16.h"

#include <array>

namespace formats {

namespace {

constexpr std::uint16_t kPolynomial = 0x1021;
constexpr std::size_t kStride = 16;

using Tables = std::array<std::array<std::uint16_t, 256>, kStride>;

// Input and output are reflected, so the register is kept reflected throughout: bytes enter at its low end
// and nothing has to be turned round. Table k holds what a byte leaves in the register once k zero bytes
// have followed it, so the sixteen look-ups of a stride do not wait for each other.
constexpr Tables MakeTables() {
    Tables tables{};
    for (std::uint16_t byte = 0; byte < 256; ++byte) {
        std::uint16_t crc = byte;
        for (int bit = 0; bit < 8; ++bit) {
            const bool carry = (crc & 1U) != 0;
            crc = static_cast<std::uint16_t>(crc >> 1);
            if (carry) {
                crc ^= ReverseBits(kPolynomial);
            }
        }
        tables[0][byte] = crc;
    }
    for (std::size_t zeros = 1; zeros < kStride; ++zeros) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint16_t before = tables[zeros - 1][byte];
            tables[zeros][byte] = static_cast<std::uint16_t>((before >> 8) ^ tables[0][before & 0xFFU]);
        }
    }
    return tables;
}

constexpr Tables kTables = MakeTables();

}  // namespace

std::uint16_t Crc16Kermit(std::span<const std::uint8_t> bytes) {
    const std::uint8_t* next = bytes.data();
    std::size_t left = bytes.size();
    unsigned crc = 0;
    for (; left >= kStride; left -= kStride, next += kStride) {
        // Only the first two look-ups depend on the register.
        const auto carried = static_cast<std::uint16_t>(kTables[15][next[0] ^ (crc & 0xFFU)] ^
                                                        kTables[14][next[1] ^ (crc >> 8)]);
        unsigned fresh = 0;
        for (std::size_t i = 2; i < kStride; ++i) {
            fresh ^= kTables[kStride - 1 - i][next[i]];
        }
        crc = carried ^ fresh;
    }
    for (; left > 0; --left, ++next) {
        crc = (crc >> 8) ^ kTables[0][(crc ^ *next) & 0xFFU];
    }
    return static_cast<std::uint16_t>(crc);
}

}  // namespace formats
