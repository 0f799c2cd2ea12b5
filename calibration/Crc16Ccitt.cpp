#include "calibration/Crc16Ccitt.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace {

template <typename Unsigned>
constexpr Unsigned ReverseBits(Unsigned value) {
    static_assert(std::is_unsigned_v<Unsigned>);
    Unsigned reversed = 0;
    for (std::size_t bit = 0; bit < 8 * sizeof(Unsigned); ++bit) {
        reversed = static_cast<Unsigned>(reversed * 2U | ((value >> bit) & 1U));
    }
    return reversed;
}

template <typename Unsigned>
int Invert(Unsigned* dst, const Unsigned* src) {
    if (dst == nullptr || src == nullptr) {
        return -1;
    }
    *dst = ReverseBits(*src);
    return 0;
}

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

CRC16CCITT::CRC16CCITT(const unsigned char* data, int length) : mData(data), mLength(length) {}

unsigned short CRC16CCITT::process() const {
    if (mData == nullptr || mLength == 0) {
        return 0;
    }
    const unsigned char* next = mData;
    std::size_t left = static_cast<std::uint32_t>(mLength);
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
    return static_cast<unsigned short>(crc);
}

int CRC16CCITT::invertUint8(unsigned char* dst, const unsigned char* src) {
    return Invert(dst, src);
}

int CRC16CCITT::invertUint16(unsigned short* dst, const unsigned short* src) {
    return Invert(dst, src);
}
