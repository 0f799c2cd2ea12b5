#include <gmock/gmock.h>

#include "formats/EepromDump.h"

namespace {

using formats::EepromDumpError;
using formats::EepromDumpText;
using formats::IsEepromDump;
using formats::ReadEepromDump;

using Bytes = std::vector<std::uint8_t>;

/// What the samples below are of.
Bytes Image() {
    Bytes image(16384);
    image[1] = 0x03;
    image[2] = 'Z';
    image[3] = 'z';
    image[0x10] = 0xA5;
    image[0x11] = 0x5A;
    image[0x3FFF] = 0xFF;
    return image;
}

constexpr const char* kXxd =
    "00000000: 0003 5a7a 0000 0000 0000 0000 0000 0000  ..Zz............\n"
    "00000010: a55a 0000 0000 0000 0000 0000 0000 0000  .Z..............\n"
    "00000020: 0000 0000 0000 0000 0000 0000 0000 0000  ................\n"
    "*\n"
    "00003ff0: 0000 0000 0000 0000 0000 0000 0000 00ff  ................\n";

constexpr const char* kXxdUpperSingle =
    "00000000: 00 03 5A 7A 00 00 00 00 00 00 00 00 00 00 00 00  ..Zz............\n"
    "00000010: A5 5A 00 00 00 00 00 00 00 00 00 00 00 00 00 00  .Z..............\n"
    "00000020: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  ................\n"
    "*\n"
    "00003ff0: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 FF  ................\n";

constexpr const char* kHexdump =
    "00000000  00 03 5a 7a 00 00 00 00  00 00 00 00 00 00 00 00  |..Zz............|\n"
    "00000010  a5 5a 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |.Z..............|\n"
    "00000020  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |................|\n"
    "*\n"
    "00003ff0  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 ff  |................|\n"
    "00004000\n";

/// `text` with every `from` replaced.
std::string With(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

TEST(EepromDump, EveryFormReadsAsTheImage) {
    const std::string own = EepromDumpText(Image());
    EXPECT_EQ(own.substr(0, 28), "0x0000 = 0x00\n0x0001 = 0x03\n");
    const std::string forms[] = {
        own,
        With(own, "\n", "\r\n"),
        "\xEF\xBB\xBF# pulled on the bench\n\n  // again\n" + With(own, "x", "X"),
        With("--------- beginning of main\n" + own, "\n0x", "\nI/Eeprom( 123): 0x"),
        With("\n" + own, "\n0x", "\n11-21 15:44:27.123  1000  1234 I CameraPlatformInfoZelvan: 0x"),
        kXxd,
        kXxdUpperSingle,
        With(kHexdump, "\n", "\r\n"),
    };
    for (const std::string& text : forms) {
        EXPECT_TRUE(IsEepromDump(text)) << text.substr(0, 100);
        EXPECT_EQ(ReadEepromDump(text), formats::EepromDump(Image())) << text.substr(0, 100);
    }
}

std::string LineText(const EepromDumpError& error) {
    return std::to_string(error.line) + ": expected " + error.expected + ", got " + error.found;
}

TEST(EepromDump, WhatIsMissingRepeatedOrCutIsSaid) {
    const std::string own = EepromDumpText(Image());
    const std::string first = own.substr(0, 14);
    const std::pair<std::string, EepromDumpError> kCases[] = {
        {own.substr(0, own.size() - 2), {16384, "a line like \"0x0010 = 0xa5\"", "half a byte"}},
        {own.substr(0, own.size() - 3), {16384, "a line like \"0x0010 = 0xa5\"", "no byte"}},
        {own.substr(0, own.size() - 8), {16384, "a line like \"0x0010 = 0xa5\"", "\"0x3fff\""}},
        {own.substr(0, own.size() - 14), {16383, "offset 0x3fff", "the end of the text"}},
        {own + "0x4000 = 0x00\n", {16385, "offset 0x4000 as the end", "more bytes"}},
        {first + "\n# twice\n" + own, {4, "offset 0x0001", "offset 0x0000"}},
        {own.substr(14), {1, "offset 0x0000", "offset 0x0001"}},
        {first + "0x0001 = 0x100\n", {2, "a line like \"0x0010 = 0xa5\"", "\"0x0001 = 0x100\""}},
        {first + "0x0001 = 0xg0\n", {2, "a line like \"0x0010 = 0xa5\"", "\"g0\""}},
        {first + "0xfffffffffffffffff = 0x00",
         {2, "a line like \"0x0010 = 0xa5\"", "\"0xfffffffffffffffff = 0x00\""}},
        {first + kXxd,
         {2, "a line like \"0x0010 = 0xa5\"",
          "\"00000000: 0003 5a7a 0000 0000... 0000 0000  ..Zz............\""}},
        {std::string(kXxd).substr(0, 28), {1, "a line like \"00000010: a55a\"", "half a byte"}},
        {std::string(kXxd).substr(0, 198), {3, "offset 0x0030", "the end of the text"}},
        {With(kXxd, "*\n", ""), {4, "offset 0x0030", "offset 0x3ff0"}},
        {With(kHexdump, "00003ff0", "00000030"), {6, "offset 0x0040", "offset 0x4000"}},
        {With(kHexdump, "*", "+"), {4, "a line like \"00000010  a5 5a\"", "\"+\""}},
        {With(kHexdump, "*\n00003ff0", "*\n00104000"), {5, "offset 0x4000", "offset 0x104000"}},
        {"0000000 0003 5a7a\n", {1, "a line like \"00000010  a5 5a\"", "\"0003\""}},
    };
    for (const auto& [text, error] : kCases) {
        const formats::EepromDump dump = ReadEepromDump(text);
        ASSERT_TRUE(std::holds_alternative<EepromDumpError>(dump)) << error.expected;
        EXPECT_EQ(LineText(std::get<EepromDumpError>(dump)), LineText(error));
    }
}

TEST(EepromDump, RawBytesAreNone) {
    const std::string raw[] = {"",
                               "\n\n",
                               std::string(16384, 'Z'),
                               std::string("0x0\0 = 0x1", 10),
                               "\x02\x03",
                               "SEMCO module 0001",
                               "beef",
                               std::string(16384, '\0')};
    for (const std::string& bytes : raw) {
        EXPECT_FALSE(IsEepromDump(bytes)) << bytes.substr(0, 20);
    }
}

}  // namespace
