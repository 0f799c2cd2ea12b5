#include "calibration/Crc16Ccitt.h"

#include <cstdint>

#include "formats/Crc16.h"

namespace {

template <typename Unsigned>
int Invert(Unsigned* dst, const Unsigned* src) {
    if (dst == nullptr || src == nullptr) {
        return -1;
    }
    *dst = formats::ReverseBits(*src);
    return 0;
}

}  // namespace

CRC16CCITT::CRC16CCITT(const unsigned char* data, int length) : mData(data), mLength(length) {}

unsigned short CRC16CCITT::process() const {
    return mData == nullptr ? std::uint16_t{0}
                            : formats::Crc16Kermit({mData, static_cast<std::uint32_t>(mLength)});
}

int CRC16CCITT::invertUint8(unsigned char* dst, unsigned char* src) {
    return Invert(dst, src);
}

int CRC16CCITT::invertUint16(unsigned short* dst, unsigned short* src) {
    return Invert(dst, src);
}
