#include <array>
#include <climits>

#include "platform/Properties.h"
#include "tests/support/TestPhone.h"

namespace {

std::string Get(const char* key, const char* fallback) {
    std::array<char, PROPERTY_VALUE_MAX> value;
    value.fill('#');
    const int length = property_get(key, value.data(), fallback);
    EXPECT_EQ(static_cast<std::size_t>(length), std::string(value.data()).size());
    return value.data();
}

TEST(Properties, SetByAndroidsRulesAndRecorded) {
    TestPhone phone(
        PhoneBuilder().property("ro.set", "1").property("plain", "old").faults({.propertySet = {"broken"}}));
    const std::string longest(91, 'x');
    const struct {
        const char* name;
        std::string value;
        bool stored;
        std::string now;
    } kCases[] = {
        {"plain", longest, true, longest}, {"plain", longest + "x", false, longest},
        {"ro.set", "2", false, "1"},       {"ro.new", "1", true, "1"},
        {"ro.new", "1", false, "1"},       {"broken", "1", false, "<unset>"},
        {"empty", "", true, ""},           {"", "1", false, "<unset>"},
    };
    for (const auto& [name, value, stored, now] : kCases) {
        EXPECT_EQ(property_set(name, value.c_str()) == 0, stored) << name;
        EXPECT_EQ(phone.property(name), now) << name;
        const virtualphone::PropertySet& last = phone.record().properties.back();
        EXPECT_EQ(last.name, name);
        EXPECT_EQ(last.value, value);
        EXPECT_EQ(last.stored, stored) << name;
    }
    EXPECT_LT(property_set("broken", "1"), 0);
    EXPECT_EQ(phone.record().properties.size(), std::size(kCases) + 1);
}

TEST(Properties, GetFallsBackToTheDefault) {
    const TestPhone phone(PhoneBuilder().property("set", "value").property("empty", ""));
    EXPECT_EQ(Get("set", "other"), "value");
    EXPECT_EQ(Get("empty", "other"), "");
    EXPECT_EQ(Get("unset", "other"), "other");
    EXPECT_EQ(Get("unset", nullptr), "");
    EXPECT_EQ(Get("unset", std::string(200, 'y').c_str()), std::string(91, 'y'));
}

TEST(Properties, NumbersAsAndroidReadsThem) {
    const TestPhone phone;
    const struct {
        const char* text;
        std::int32_t number;
    } kCases[] = {
        {"17", 17},
        {" -17", -17},
        {"0x1F", 31},
        {"010", 8},
        {"1 rest", 1},
        {"2147483647", INT_MAX},
        {"2147483648", -9},
        {"-2147483648", INT_MIN},
        {"", -9},
        {"none", -9},
        {"99999999999999999999", -9},
        {"0", 0},
    };
    for (const auto& [text, number] : kCases) {
        property_set("number", text);
        EXPECT_EQ(property_get_int32("number", -9), number) << text;
    }
    EXPECT_EQ(property_get_int32("unset", -9), -9);
}

}  // namespace
