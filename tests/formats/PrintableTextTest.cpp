#include <gmock/gmock.h>

#include "formats/PrintableText.h"

namespace {

TEST(PrintableText, WhatDoesNotPrintIsWrittenOut) {
    const std::pair<std::string, std::string> kCases[] = {
        {"a\\\"~", "a\\\"~"},
        {std::string("\0\n\x1B\x7F", 4), "\\x00\\x0A\\x1B\\x7F"},
        {"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\xB7", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\xB7"},
        {"\xC2\x85\xE2\x80\xAE\xEF\xBB\xBF", "\\u0085\\u202E\\uFEFF"},
        // A lone continuation, a cut character, a surrogate, an overlong slash, more than Unicode has.
        {"\x80"
         "a\xE2\x82",
         "\\x80a\\xE2\\x82"},
        {"\xED\xA0\x80\xC0\xAF\xF4\x90\x80\x80", "\\xED\\xA0\\x80\\xC0\\xAF\\xF4\\x90\\x80\\x80"},
    };
    for (const auto& [text, printable] : kCases) {
        EXPECT_EQ(formats::Printable(text), printable);
    }
}

TEST(PrintableText, LongTextsLoseTheirMiddle) {
    EXPECT_EQ(formats::Shortened("0123456789", 10), "0123456789");
    EXPECT_EQ(formats::Shortened("0123456789", 9), "012...789");
    EXPECT_EQ(formats::Shortened("0123456789", 3), "...");
    EXPECT_EQ(formats::Shortened("ab\xC3\xA4zzzz\xC3\xA4yx", 9), "ab...yx");
}

}  // namespace
