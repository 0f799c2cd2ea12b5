#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <sys/stat.h>

#include "tests/support/TestPhone.h"

namespace {

/// The error of a phone whose side files lie in `folder`, without the file's name; "no error" for a good one.
std::string ErrorOf(const std::string& json, const std::filesystem::path& folder = {}) {
    const std::string text = PhoneFileErrorOf([&] { virtualphone::ParsePhone(json, folder, "p.json"); });
    EXPECT_EQ(text.substr(0, 8), text == "no error" ? "no error" : "p.json: ");
    return text == "no error" ? text : text.substr(8);
}

TEST(PhoneFileErrors, NameFilePointerAndExpectation) {
    const std::string elements20 = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,";
    const std::string noPath =
        ": expected an absolute path as the key, without \".\", \"..\" or empty parts, got another path";
    const std::pair<std::string, std::string> kCases[] = {
        // The document.
        {R"({"$schema": 1})", "/$schema: expected a text, got 1"},
        {"[]", "expected an object, got an array"},
        {R"({"a~/b": 1})",
         "/a~0~1b: expected one of the keys $schema, name, properties, files, sensors, sensorAliases, "
         "logicalDevices, "
         "sensorDeviceIndexes, staticMetadata, faults, got an unknown key"},
        {R"({"faults": {"propertySet": [], "propertySet": []}})",
         "/faults/propertySet: expected each key once, got it a second time"},
        {R"({"name": null})", "/name: expected a text, got null"},
        // Types and ranges of numbers.
        {R"({"sensors": [7]})", "/sensors/0: expected an object, got 7"},
        {R"({"sensors": [{"deviceBits": 4294967296}]})",
         "/sensors/0/deviceBits: expected an integer from 0 to 4294967295, got 4294967296"},
        {R"({"sensors": [{"deviceId": "0x-7"}]})",
         "/sensors/0/deviceId: expected an integer from -2147483648 to 2147483647, got \"0x-7\""},
        {R"({"sensors": [{"captureSize": [1]}]})",
         "/sensors/0/captureSize: expected a size as [width, height], got 1 elements"},
        {R"({"sensors": [{"af": {"capable": 1}}]})", "/sensors/0/af/capable: expected true or false, got 1"},
        {R"({"sensors": [{"modes": [)" + elements20 + "0]}]}",
         "/sensors/0/modes: expected at most 20 elements, got 21"},
        {R"({"sensors": [)" + elements20 + "0,0,0,0,0,0,0,0,0,0,0,0,0]}",
         "/sensors: expected at most 32 elements, got 33"},
        {R"({"sensorAliases": {"0": {}}, "sensors": [{}]})",
         "/sensorAliases/0: expected an index that is no sensor as the key, got 0"},
        // Properties.
        {R"({"properties": {"a": ")" + std::string(92, 'x') + "\"}}",
         "/properties/a: expected a property value of at most 91 characters, got 92"},
        {R"({"properties": {"a": "x\u0000"}})",
         R"(/properties/a: expected a text without a zero byte, got "x\u0000")"},
        // Files.
        {R"({"files": {"a": {}}})", "/files/a" + noPath},
        {R"({"files": {"/a/../b": {}}})", "/files/~1a~1..~1b" + noPath},
        {R"({"files": {"/a": {"hex": "ABC"}}})",
         "/files/~1a/hex: expected an even number of hexadecimal digits, got 3"},
        {R"({"files": {"/a": {"fill": 0, "size": 67108865}}})",
         "/files/~1a/size: expected an integer from 0 to 67108864, got 67108865"},
        {R"({"files": {"/a": {"fill": 9}}})",
         "/files/~1a: expected \"fill\" and \"size\" together, got fill alone"},
        {R"({"files": {"/a": {"fill": 0, "size": 60000000}, "/b": {"fill": 0, "size": 60000000}}})",
         "/files/~1b: expected at most 67108864 bytes in all files up to this one, got 120000000"},
        {R"({"files": {"/a": {"size": 1, "text": ""}}})",
         "/files/~1a: expected one of \"fill\" with \"size\", \"hex\", \"text\", \"file\", \"dualcal\" and "
         "\"oiscal\", got 2 of them"},
        {R"({"files": {"/a": {"dualcal": {"slave": ")" + std::string(512, '0') + "\"}}}}",
         "/files/~1a/dualcal/slave: expected a fuse id of at most 255 bytes, got 256"},
        {R"({"files": {"/a\u0000b": {}}})",
         R"(/files/~1a\x00b: expected an absolute path as the key, got a key with a zero byte)"},
        {R"({"files": {"/a/b/c": {}, "/a": {}}})",
         "/files/~1a~1b~1c: expected a path through folders, got one through the file /a"},
        {R"({"files": {"/data/vendor": {}}})",
         "/files/~1data~1vendor: expected the path of a file, got a folder that the phone has"},
        {R"({"files": {"/.virtualphone": {}}})",
         "/files/~1.virtualphone: expected a file of the phone, got the virtual phone's own list"},
        {R"({"files": {"/a": {"bytes": {"0": "00"}}}})",
         "/files/~1a: expected \"fill\" and \"size\" together, got neither"},
        {R"({"files": {"/a": {"fill": 0, "size": 2, "bytes": {"1": "0102"}}}})",
         "/files/~1a/bytes/1: expected at most 1 bytes at this offset, got 2"},
        // EEPROM images.
        {R"({"sensors": [{"eeprom": {"fill": 1, "file": "x"}}]})",
         R"(/sensors/0/eeprom: expected either "file" or "fill", got both)"},
        {R"({"sensors": [{"eeprom": {"bytes": {"16383": "0000"}}}]})",
         "/sensors/0/eeprom/bytes/16383: expected at most 1 bytes at this offset, got 2"},
        {R"({"sensors": [{"eeprom": {"bytes": {"16": "00", "0x10": "00"}}}]})",
         "/sensors/0/eeprom/bytes/0x10: expected each number once as a key, got it a second time"},
        {R"({"sensors": [{"eeprom": {"checksums": "imx707"}}]})",
         "/sensors/0/eeprom/checksums: expected an EEPROM layout, one of halcyrion_semco_wide_imx707_eeprom, "
         "halcyrion_sunny_tele_ov50d_eeprom, halcyrion_aac_front_imx596_eeprom, "
         "halcyrion_ofilm_uw_ov13b_eeprom, got \"imx707\""},
        {R"({"sensors": [{"eeprom": {"breakChecksums": []}}]})",
         "/sensors/0/eeprom/breakChecksums: expected \"checksums\" beside it, got none"},
        {R"({"sensors": [{"eeprom": {"checksums": "halcyrion_ofilm_uw_ov13b_eeprom", "breakChecksums": ["OIS"]}}]})",
         "/sensors/0/eeprom/breakChecksums/0: expected a range of that layout, one of AWB, LSC, got \"OIS\""},
        // Static metadata.
        {R"({"staticMetadata": {"0": {"1": {}}}})",
         "/staticMetadata/0/1: expected a \"type\", got an entry without"},
        {R"({"staticMetadata": {"0": {"1": {"type": "double"}}}})",
         "/staticMetadata/0/1/type: expected one of the types none, int32, int64, float, byte, memory, got "
         "\"double\""},
        {R"({"staticMetadata": {"0": {"1": {"type": "float", "values": [1e39]}}}})",
         "/staticMetadata/0/1/values/0: expected a number within single precision, \"NaN\", \"Infinity\" or "
         "\"-Infinity\", got 1e+39"},
    };
    for (const auto& [json, error] : kCases) {
        EXPECT_EQ(ErrorOf(json), error) << json;
    }
}

/// `text`, `count` times.
std::string Times(std::size_t count, const std::string& text) {
    std::string all;
    for (; count > 0; --count) {
        all += text;
    }
    return all;
}

TEST(PhoneFileErrors, LongMessagesLoseTheirMiddle) {
    const std::string error = ErrorOf(R"({"files": {"/)" + std::string(256, 'n') + R"(/a": {}}})");
    EXPECT_THAT(error,
                testing::MatchesRegex(
                    "/files/~1n+\\.\\.\\.n+~1a: expected names of at most 255 bytes in the path, got 256"));
    EXPECT_EQ(error.size() + std::string_view("p.json: ").size(), virtualphone::PhoneFileError::kLongest);
    const std::string path = "/" + Times(2000, "a/") + "b";
    EXPECT_THAT(ErrorOf(R"({"files": {")" + path + R"(": {}}})"),
                testing::EndsWith(": expected a path of at most 3839 bytes, got 4002"));
}

TEST(PhoneFileErrors, ParsingStopsAtTheLimits) {
    const std::string levels = ": expected at most 64 levels of objects and arrays, got more";
    EXPECT_THAT(ErrorOf(Times(65, "[")), testing::EndsWith(levels));
    EXPECT_THAT(ErrorOf(Times(400, R"({"sensors":)")), testing::EndsWith(levels));
    EXPECT_EQ(ErrorOf(Times(64, "[") + Times(64, "]")), "expected an object, got an array");
    EXPECT_EQ(ErrorOf(R"({"logicalDevices": [)" + Times(65536, "{},") + "{"),
              "/logicalDevices/65536: expected at most 65536 elements in an array, got more");
    std::string properties;
    for (int i = 0; i < 65536; ++i) {
        properties += "\"p" + std::to_string(i) + "\": \"\",";
    }
    EXPECT_EQ(ErrorOf(R"({"properties": {)" + properties + R"("last": "")"),
              "/properties/last: expected at most 65536 members in an object, got more");
    EXPECT_EQ(ErrorOf(R"({"properties": {)" + properties + R"("p9": "")"),
              "/properties/p9: expected each key once, got it a second time");
    const std::string row = "[" + Times(65535, "0,") + "0],";
    EXPECT_EQ(ErrorOf("[" + Times(16, row)), "/15/65519: expected at most 1048576 values in all, got more");
    const std::string most(std::size_t{16} << 20, '4');
    EXPECT_EQ(ErrorOf("\n{\"name\": \"\\\"" + most),
              "expected at most 16777216 bytes in one text, got more at line 2, column 10");
    EXPECT_EQ(ErrorOf("{\"name\": /*\"" + most),
              "expected at most 16777216 bytes without a text or number, got more at line 1, column 8");
    EXPECT_EQ(ErrorOf("[-" + most),
              "expected a number of at most 64 characters, got more at line 1, column 2");
    EXPECT_EQ(ErrorOf("{\"name\": \"" + most.substr(2) + "\", // \"" + most.substr(99) + "\n\"faults\": {}}"),
              "no error");
}

TEST(PhoneFileErrors, SyntaxErrorsTellThePlace) {
    EXPECT_THAT(ErrorOf(""), testing::StartsWith("expected JSON, got line 1, column 1: "));
    EXPECT_THAT(ErrorOf("// a comment\n{\"sensors\": [{}, {\"modes\": [[1, 2], [3, \n]]}]}"),
                testing::StartsWith("/sensors/1/modes/1/1: expected JSON, got line 3, column 1: "));
    EXPECT_THAT(ErrorOf("{\"name\": \"\xFF\"}"), testing::StartsWith("/name: expected JSON, got line 1, "));
    EXPECT_THAT(ErrorOf("{\"sensors\": [1e999]}"),
                testing::StartsWith(
                    "/sensors/0: expected JSON, got line 1, column 14: number overflow parsing '1e999'"));
    EXPECT_EQ(ErrorOf("{\"name\": /* none */ \"\"}"), "no error");
}

TEST(PhoneFileErrors, SideFilesAreReadBeforeAnythingRuns) {
    const virtualphone::TemporaryFolder folder;
    const std::string path = folder.path().string();
    std::filesystem::create_directory(folder.path() / "folder");
    ASSERT_EQ(mkfifo((path + "/pipe").c_str(), 0600), 0);
    std::ofstream(folder.path() / "large") << std::string(16385, 'x');
    std::ofstream(folder.path() / "dump") << "0x0000 = 0x01\n0x4000 = 0x02\n";
    const std::string unreadable = "a readable file, got " + path;
    const std::map<std::string, std::string> expectations = {
        {"none", unreadable + "/none: No such file or directory"},
        {"folder", unreadable + "/folder: a folder"},
        {"pipe", unreadable + "/pipe: neither a file nor a folder"},
        {"large", "a file of at most 16384 bytes, or the text of a dump, got 16385 bytes"},
        {"dump", "the dump of a whole EEPROM with offset 0x0001 in line 2 of the file, got offset 0x4000"}};
    for (const auto& [file, expectation] : expectations) {
        EXPECT_EQ(ErrorOf(R"({"sensors": [{"eeprom": {"file": ")" + file + "\"}}]}", folder.path()),
                  "/sensors/0/eeprom/file: expected " + expectation);
    }
    EXPECT_EQ(ErrorOf(R"({"files": {"/a": {"file": "none"}}})", folder.path()),
              "/files/~1a/file: expected " + expectations.at("none"));
}

TEST(PhoneFileErrors, PhoneFileThatCannotBeRead) {
    const virtualphone::TemporaryFolder folder;
    const auto errorOf = [](const std::string& path) {
        return PhoneFileErrorOf([&path] { virtualphone::ReadPhoneFile(path); });
    };
    const std::string path = folder.path().string();
    EXPECT_EQ(errorOf(path), path + ": expected a phone file, got a folder");
    EXPECT_EQ(
        errorOf(path + "/none"),
        path + "/none: expected a phone file, got nothing that can be read (No such file or directory)");
    EXPECT_EQ(errorOf("/dev/zero"), "/dev/zero: expected a phone file, got more than 67108864 bytes");
}

}  // namespace
