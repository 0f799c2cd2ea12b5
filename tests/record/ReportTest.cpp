#include <sstream>

#include <gmock/gmock.h>

#include "record/Report.h"
#include "tests/record/EventSamples.h"

namespace {

using namespace record;

std::string Written(const BootRecord& boot) {
    std::ostringstream out;
    WriteReport(out, boot);
    return out.str();
}

std::string ErrorOf(const std::string& text) {
    try {
        ReadReport(text);
    } catch (const ReportError& error) {
        return error.what();
    }
    return "no error";
}

BootRecord Boot() {
    return {
        .phone = "a \"phone\"",
        .plugin = PluginIdentity{"/lib/p.so", "0a1b"},
        .events = EventSamples(),
        .files = {{"/a", 0600, {0xAB}}, {"/b", 07777, {}}},
        .rewritten = {{"/d", 0600, {0xCD}}},
        .foreignFiles = 2,
        .troubles = {"/c: cannot be read"},
        .ended = Ended{.how = Ended::How::Signal, .what = "", .signal = 11, .step = "Op"},
        .description = R"({"name": "a", "sensors": [{"deviceId": 7}], "big": [0.1, 1e9]})",
    };
}

TEST(Report, IsReadAsItWasWritten) {
    const BootRecord boot = Boot();
    const std::string text = Written(boot);
    const BootRecord read = ReadReport(text);
    EXPECT_EQ(read.phone, boot.phone);
    EXPECT_EQ(read.plugin, boot.plugin);
    EXPECT_TRUE(read.events == boot.events);
    EXPECT_EQ(read.files, boot.files);
    EXPECT_EQ(read.rewritten, boot.rewritten);
    EXPECT_EQ(read.foreignFiles, boot.foreignFiles);
    EXPECT_EQ(read.troubles, boot.troubles);
    EXPECT_EQ(read.ended, boot.ended);
    EXPECT_TRUE(read.ordered);
    EXPECT_EQ(Written(read), text);
    EXPECT_THAT(text, testing::HasSubstr(R"(
    {"query": "sensorIds", "about": -6, "answer": [0, 3]},
    {"query": "deviceName", "about": 6, "answer": "BACK"},
    {"asked": "unset", "value": null},
    {"log": 0},
    {"property": 0},
    {"opened": "/a"},
    {"eepromRead": 0},
    {"autofocusRead": 1, "succeeded": false},
    {"asked": "n", "value": "v\n"},
    {"provider": "0x7"},
    {"stored": "0x91010021", "result": -5, "count": 1},
    {"log": 1},
    {"device": 0},
    {"eepromRead": 1},
    {"thirdCalibration": 0}
)"));
}

TEST(Report, EveryEnding) {
    using How = Ended::How;
    for (const Ended& ended : {Ended{}, Ended{.how = How::Threw, .what = "w", .step = "S"},
                               Ended{.how = How::Signal, .what = "", .signal = 34, .step = ""},
                               Ended{.how = How::Exited, .what = "", .exitStatus = 3, .step = "S"},
                               Ended{.how = How::Timeout, .what = "", .seconds = 0.5, .step = ""}}) {
        BootRecord boot;
        boot.ended = ended;
        EXPECT_EQ(ReadReport(Written(boot)).ended, ended);
    }
}

TEST(Report, OlderOnesAreReadAndStayAsTheyAre) {
    const std::string text = R"({
  "phone": "old",
  "properties": [
    {"name": "n", "value": "v", "stored": false}
  ],
  "files": {},
  "devices": [],
  "thirdCalibration": [],
  "eepromReads": [
    {"sensorId": 1799, "deviceBit": 1, "offset": 2, "length": 3}
  ],
  "log": [
    {"priority": 3, "tag": "T", "message": "(1)[Op] m"}
  ],
  "exception": "off the end"
}
)";
    const BootRecord boot = ReadReport(text);
    EXPECT_FALSE(boot.ordered);
    EXPECT_EQ(boot.ended, (Ended{.how = Ended::How::Threw, .what = "off the end", .step = "Op"}));
    EXPECT_EQ(EventsOf<EepromRead>(boot).at(0)->read, std::nullopt);
    EXPECT_EQ(Written(boot), text);
}

TEST(Report, WhatIsNoReportIsSaidWithItsPlace) {
    const std::string good = Written(Boot());
    ASSERT_EQ(ErrorOf(good), "no error");
    const auto with = [&good](const std::string& from, const std::string& to) {
        std::string text = good;
        return ErrorOf(text.replace(text.find(from), from.size(), to));
    };
    EXPECT_EQ(ErrorOf(""), "line 1, column 1: expected a report, got no JSON from here on");
    EXPECT_EQ(ErrorOf("{\n  \"phone\": 1e99\n}"),
              "line 2, column 15: expected a report, got a number beyond all bounds");
    EXPECT_EQ(ErrorOf(std::string(5'000'000, '[')),
              "/: expected at most 64 lists and objects in each other, got more");
    EXPECT_EQ(ErrorOf("{\"phone\": " + std::string(65, '1') + "}"),
              "line 1, column 11: expected a number of at most 64 characters, got more");
    EXPECT_EQ(ErrorOf("[]"), "/: expected an object, got a list");
    EXPECT_EQ(ErrorOf("{}"), "/: expected a member \"phone\", got none");
    EXPECT_EQ(with("\"format\": 1", "\"format\": 2"), "/format: expected a whole number from 1 to 1, got 2");
    EXPECT_EQ(with("\"phone\"", "\"pho\\u0001/~ne\""),
              "/pho\\u0001~1~0ne: expected a key of a report, got an unknown one");
    EXPECT_EQ(with("\"phone\"", "\"phone\": \"\", \"phone\""),
              "/phone: expected each key once, got it twice");
    EXPECT_EQ(with("\"priority\": 6", "\"priority\": 2147483648"),
              "/log/0/priority: expected a whole number from -2147483648 to 2147483647, got 2147483648");
    EXPECT_EQ(with("[255]", "[256]"),
              "/devices/0/metadata/4/values/0: expected a whole number from 0 to 255, got 256");
    EXPECT_EQ(with("[60]", "[]"),
              "/devices/0/metadata/5/values: expected no values where the type is \"none\", and "
              "values where it is another, got 0");
    EXPECT_EQ(with("\"0x2\"", "\"0x5\""),
              "/devices/0/metadata/2: expected tags in ascending order, got one below the tag before it");
    EXPECT_EQ(with("01FF", "01F"),
              "/thirdCalibration/0/hex: expected two hexadecimal digits a byte, got \"01F\"");
    EXPECT_EQ(with("\"/b\"", "\"/a\""),
              "/files/~1a: expected files in ascending order, got one below the file before it");
    EXPECT_EQ(with("\"size\": 1", "\"size\": 2"), "/files/~1a/size: expected the number of bytes, 1, got 2");
    EXPECT_EQ(with("{\"log\": 1}", "{\"log\": 0}"),
              "/events/11/log: expected a whole number from 1 to 1, got 0");
    EXPECT_EQ(with("{\"log\": 1},", ""), "/log: expected each element among the events, got 1 of 2");
    EXPECT_EQ(with("{\"log\": 1}", "{\"log\": 1}, {\"log\": 2}"),
              "/events/12/log: expected no further one of this kind, got 2");
    EXPECT_EQ(with("\"SIGSEGV\"", "\"SIGNAL\""),
              "/ended/signal: expected the name of a signal, got \"SIGNAL\"");
    EXPECT_EQ(with("\"signal\",", "\"threw\","),
              "/ended: expected \"threw\" where there is an \"exception\", and there only, got an object");
}

TEST(Report, TooMuchOfAnythingIsRefused) {
    const auto lists = [](std::size_t count, std::size_t elements) {
        std::string list = "[0";
        for (std::size_t i = 1; i < elements; ++i) {
            list += ",0";
        }
        std::string text = R"({"log": [0)";
        for (std::size_t i = 0; i < count; ++i) {
            text += "," + list + "]";
        }
        return text + "]}";
    };
    EXPECT_EQ(ErrorOf(lists(1, 1048576)), R"(/: expected a member "phone", got none)");
    EXPECT_EQ(ErrorOf(lists(1, 1048577)), "/: expected at most 1048576 elements in a list, got more");
    EXPECT_EQ(ErrorOf(lists(10, 1000000)),
              "/: expected at most 10000000 values, a member counted as three, got more");
    EXPECT_EQ(ErrorOf("{\"log\": " + std::string(100, '[')),
              "/: expected at most 64 lists and objects in each other, got more");
}

/// Cut anywhere and with any byte changed a report is read or refused, and what is read is written the same.
TEST(Report, DamagedOnesDoNoHarm) {
    const std::string good = Written(Boot());
    std::size_t refused = 0;
    for (std::size_t at = 0; at < good.size() - 2; ++at) {
        EXPECT_NE(ErrorOf(good.substr(0, at)), "no error") << at;
        for (const char byte : {'\0', '0', '9', '"', '}', '\xFF'}) {
            std::string text = good;
            text[at] = byte;
            const std::string error = ErrorOf(text);
            EXPECT_LE(error.size(), 300U);
            if (error == "no error") {
                const std::string again = Written(ReadReport(text));
                EXPECT_EQ(Written(ReadReport(again)), again) << at;
            } else {
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, good.size());
}

}  // namespace
