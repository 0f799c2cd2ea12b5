#include <algorithm>
#include <random>
#include <type_traits>

#include "calibration/Crc16Ccitt.h"
#include "tests/calibration/CalibrationBytes.h"

namespace {

unsigned Process(const Bytes& bytes, std::size_t start, std::size_t length) {
    return CRC16CCITT(bytes.data() + start, static_cast<int>(length)).process();
}

TEST(Crc16Ccitt, EveryLengthAndAlignmentAsBitByBit) {
    const Bytes catalogue{'1', '2', '3', '4', '5', '6', '7', '8', '9', 0x41};
    EXPECT_EQ(Process(catalogue, 0, 9), 0x2189U);
    EXPECT_EQ(Process(catalogue, 9, 1), 0x538DU);
    EXPECT_EQ(CRC16CCITT(nullptr, 5).process(), 0);
    std::mt19937 random(20);
    Bytes bytes(320);
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<std::uint8_t>(random()); });
    for (std::size_t start = 0; start < 17; ++start) {
        for (std::size_t length = 0; length <= 300; ++length) {
            ASSERT_EQ(Process(bytes, start, length), BitwiseCrc(bytes.data() + start, length))
                << start << " " << length;
        }
    }
}

// The types are part of the names that callers link against.
static_assert(std::is_same_v<decltype(&CRC16CCITT::invertUint8), int (*)(unsigned char*, unsigned char*)>);
static_assert(std::is_same_v<decltype(&CRC16CCITT::invertUint16), int (*)(unsigned short*, unsigned short*)>);

TEST(Crc16Ccitt, InvertsTurnBitsRound) {
    unsigned char byte = 0xB1;
    unsigned short word = 0x1234;
    EXPECT_EQ(CRC16CCITT::invertUint8(&byte, &byte), 0);
    EXPECT_EQ(CRC16CCITT::invertUint16(&word, &word), 0);
    EXPECT_EQ(CRC16CCITT::invertUint8(&byte, nullptr), -1);
    EXPECT_EQ(CRC16CCITT::invertUint8(nullptr, &byte), -1);
    EXPECT_EQ(CRC16CCITT::invertUint16(&word, nullptr), -1);
    EXPECT_EQ(CRC16CCITT::invertUint16(nullptr, &word), -1);
    EXPECT_EQ(byte, 0x8D);
    EXPECT_EQ(word, 0x2C48);
}

}  // namespace
