#include <fstream>
#include <iterator>
#include <random>

#include "formats/PrintableText.h"
#include "tests/support/TestPhone.h"

namespace {

std::string Sample(const char* name) {
    std::ifstream stream(std::string(PHONES) + name);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A phone file that something happened to: cut, bytes flipped, a piece doubled or moved, a value of another
/// type, brackets or long names put in.
std::string Damaged(std::string text, std::mt19937& random) {
    const std::string pieces[] = {"null",
                                  "-1",
                                  "1e999",
                                  "\"\"",
                                  "[",
                                  "{",
                                  "}",
                                  "]",
                                  ",",
                                  "\"",
                                  "\x01",
                                  "\xFF",
                                  "0x",
                                  "{\"sensors\":[",
                                  "99999999999999999999",
                                  "\"fill\":",
                                  std::string(1, '\0'),
                                  std::string(70, '['),
                                  '"' + std::string(400, 'n') + "\":{",
                                  "\"\\u0000\":1,"};
    const auto upTo = [&random](std::size_t most) { return random() % (most + 1); };
    for (std::size_t count = upTo(2) + 1; count > 0; --count) {
        const std::size_t place = upTo(text.size());
        const std::size_t length = upTo(std::min<std::size_t>(text.size() - place, 40));
        switch (upTo(4)) {
            case 0:
                text.resize(place);
                break;
            case 1:
                text.insert(place, text.substr(upTo(text.size()), 40));
                break;
            case 2:
                if (place < text.size()) {
                    text[place] = static_cast<char>(random());
                }
                break;
            case 3:
                text.replace(place, length, pieces[upTo(std::size(pieces) - 1)]);
                break;
            default:
                // A whole number becomes something else; the text stays JSON.
                if (const std::size_t digit = text.find_first_of("0123456789", place); digit < text.size()) {
                    text.replace(digit, 1, pieces[upTo(3)]);
                }
        }
    }
    return text;
}

TEST(DamagedPhoneFiles, GiveAPhoneOrOneLine) {
    std::mt19937 random(20261121);
    int good = 0;
    int bad = 0;
    for (const std::string& sample : {Sample("/halcyrion.json"), Sample("/fieldtrouble.json")}) {
        ASSERT_FALSE(sample.empty());
        for (int i = 0; i < 1500; ++i) {
            const std::string text = Damaged(sample, random);
            const std::string name = std::string(static_cast<std::size_t>(i % 400), 'd') + "/damaged.json";
            const std::string error = PhoneFileErrorOf([&] { virtualphone::ParsePhone(text, PHONES, name); });
            if (error == "no error") {
                ++good;
                continue;
            }
            ++bad;
            ASSERT_LE(error.size(), 300U - std::string_view("zvcam: ").size()) << error;
            ASSERT_EQ(formats::Printable(error), error);
            ASSERT_THAT(error, testing::ContainsRegex("^d*[.d]*/damaged.json: .*expected .+, got .+"))
                << error;
        }
    }
    // Damage in a comment leaves a phone.
    EXPECT_GT(good, 100);
    EXPECT_GT(bad, 1000);
}

}  // namespace
