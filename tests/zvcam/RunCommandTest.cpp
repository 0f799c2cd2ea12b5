#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <sys/wait.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "virtualphone/TemporaryFolder.h"

// ZVCAM, FAKE_PLUGIN and NO_PLUGIN are file names, PHONES a folder; the build defines them.

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

struct Result {
    int exitCode;
    std::string out;
    std::string error;
};

std::string ReadText(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream) << path << " is missing";
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Runs zvcam in a folder of its own, beside the phone files of the test.
class Zvcam : public testing::Test {
  protected:
    Zvcam() {
        fs::create_directory(mFolder.path() / "tmp");
        write("phone.json", R"({"name": "small", "faults": {"propertySet": ["refused"]}})");
    }

    /// Whatever happens, no temporary folder is left.
    ~Zvcam() override { EXPECT_TRUE(fs::is_empty(mFolder.path() / "tmp")); }

    Result zvcam(const std::string& arguments) const {
        const std::string command = "cd '" + mFolder.path().string() +
                                    "' && umask 022 && TMPDIR=\"$PWD/tmp\" '" ZVCAM "' >out 2>error " +
                                    arguments;
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadText(file("out")), ReadText(file("error"))};
    }

    fs::path file(const std::string& name) const { return mFolder.path() / name; }
    void write(const std::string& name, const std::string& text) const { std::ofstream(file(name)) << text; }

  private:
    virtualphone::TemporaryFolder mFolder;
};

const std::string kFake = "run phone.json --library '" FAKE_PLUGIN "' ";

TEST_F(Zvcam, ReportIsCompleteAndExact) {
    const std::string start = R"({
  "format": 1,
  "phone": "small",
  "plugin": {
    "path": ")" FAKE_PLUGIN R"(",
    "buildId": ")";
    const std::string rest = R"("
  },
  "ended": {
    "how": "returned"
  },
  "properties": [
    {"name": "test.ending", "value": "return", "stored": true},
    {"name": "refused", "value": "\u001b[1m)"
                             "\xEF\xBF\xBD"
                             R"(", "stored": false}
  ],
  "files": {
    "/data/vendor/camera/made": {"size": 4, "mode": "0644", "hex": "6D616465"}
  },
  "devices": [
    {
      "provider": "0x40007",
      "metadata": [
        {"tag": "0x1", "type": "float", "values": [0.6, 24.0, "-Infinity"]},
        {"tag": "0x2", "type": "int64", "values": [-9000000000, 100000000, 200000000, 300000000, 400000000, 500000000, 600000000]},
        {"tag": "0x3", "type": "memory", "values": ["01AB", ""]},
        {"tag": "0x4", "type": "byte", "values": [255]},
        {"tag": "0x5", "type": "none", "values": []},
        {"tag": "0x91010021", "name": "ZELVAN_CAMERA_ROLEID", "type": "int32", "values": [60]}
      ]
    }
  ],
  "thirdCalibration": [
    {"hex": "0102FF"}
  ],
  "eepromReads": [
    {"sensorId": 1799, "deviceBit": 1, "offset": 2, "length": 3, "read": 0}
  ],
  "log": [
    {"priority": 3, "tag": "Fake", "message": "quiet"},
    {"priority": 6, "tag": "Fake", "message": "loud"}
  ],
  "events": [
    {"asked": "test.ending", "value": null},
    {"property": 0},
    {"property": 1},
    {"opened": "/data/vendor/camera/made"},
    {"provider": "0x40007"},
    {"stored": "0x91010021", "result": 0, "count": 1},
    {"stored": "0x1", "result": 0, "count": 3},
    {"stored": "0x2", "result": 0, "count": 7},
    {"stored": "0x3", "result": 0, "count": 2},
    {"stored": "0x4", "result": 0, "count": 1},
    {"stored": "0x5", "result": 0, "count": 0},
    {"device": 0},
    {"thirdCalibration": 0},
    {"query": "calibrationHelper", "about": 0, "answer": [1]},
    {"eepromRead": 0},
    {"log": 0},
    {"log": 1}
  ],
  "description": {
    "name": "small",
    "faults": {"propertySet": ["refused"]}
  }
}
)";
    const Result printed = zvcam(kFake + "--json -");
    EXPECT_EQ(printed.exitCode, 0) << printed.error;
    EXPECT_THAT(printed.out, AllOf(StartsWith(start), testing::EndsWith(rest)));
    EXPECT_THAT(printed.error, IsEmpty());
    const Result written = zvcam(kFake + "--json report.json");
    EXPECT_EQ(ReadText(file("report.json")), printed.out);
    EXPECT_THAT(written.out, StartsWith("Phone small\n"));
}

TEST_F(Zvcam, SummaryIsForPeople) {
    const Result result = zvcam("run phone.json --library '" FAKE_PLUGIN "' --set test.ending=");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.error, IsEmpty());
    EXPECT_EQ(result.out,
              "Phone small\n\nProperties set (2)\n  test.ending = \n"
              "  refused     = \\x1B[1m\xFF   [refused]\n"
              R"(
Files created or changed (1)
  /data/vendor/camera/made  0644  4 bytes

Devices (1)
  provider 0x40007: 6 tags
    0x1         -                     float   0.6, 24, -inf
    0x2         -                     int64   -9000000000, 100000000, 200000000, 300000000, 400000000, ... (7 values)
    0x3         -                     memory  2 bytes: 01 AB, 0 bytes
    0x4         -                     byte    255
    0x5         -                     none    -
    0x91010021  ZELVAN_CAMERA_ROLEID  int32   60

Third calibration hand-overs (1)
  3 bytes: 01 02 FF

EEPROM reads (1)
  sensor id 0x707, device bit 0x1: 3 bytes from offset 2

Errors among 2 log lines (1)
  Fake: loud
)");
}

TEST_F(Zvcam, RunThatThrowsReportsWhatHappenedBefore) {
    const std::map<std::string, std::string> exceptions = {
        {"throw", "off the end"}, {"throw int", "an exception that is no std::exception"}};
    for (const auto& [ending, exception] : exceptions) {
        const Result result = zvcam(kFake + "--json report.json --set 'test.ending=" + ending + "'");
        EXPECT_EQ(result.exitCode, 1) << ending;
        EXPECT_EQ(result.error, "zvcam: the run threw: " + exception + "\n");
        EXPECT_THAT(result.out, HasSubstr("  Fake: loud\n"));
        const nlohmann::json report = nlohmann::json::parse(ReadText(file("report.json")));
        EXPECT_EQ(report["exception"], exception);
        EXPECT_EQ(report["ended"], nlohmann::json({{"how", "threw"}}));
        EXPECT_EQ(report["properties"][0]["value"], ending);
        EXPECT_EQ(report["log"].size(), 2U);
    }
}

TEST_F(Zvcam, RootIsKeptAndSetComesBeforeThePhoneFile) {
    write("phone.json", R"({"properties": {"test.ending": "file"}, "files": {"/laid": {"text": "x"}}})");
    const Result result = zvcam(kFake + "--root root/of/phone --set=test.ending=a=b --set other=");
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_THAT(result.out, StartsWith("Phone without a name\n\nProperties set (2)\n  test.ending = a=b\n"));
    EXPECT_EQ(ReadText(file("root/of/phone/laid")), "x");
    EXPECT_EQ(ReadText(file("root/of/phone/data/vendor/camera/made")), "made");
}

TEST_F(Zvcam, WhatCannotBeUsedEndsWithTwo) {
    const std::string folder = file("").parent_path().string();
    const std::string hint = "\nRun with --help for more information.\n";
    write("bad.json", R"({"sensor": []})");
    const std::pair<std::string, std::string> kCases[] = {
        {"", "A subcommand is required" + hint},
        {"run", "PHONE is required" + hint},
        {"run phone.json other.json", "The following argument was not expected: other.json" + hint},
        {"run phone.json --set name", "--set: expected NAME=VALUE, got \"name\"" + hint},
        {"run phone.json --set n=" + std::string(92, 'x'),
         "--set: expected a value of at most 91 characters, got 92" + hint},
        {"run none.json", "zvcam: none.json: expected a phone file, got No such file or directory\n"},
        {"run bad.json --root made",
         "zvcam: bad.json: /sensor: expected one of the keys $schema, name, properties, files, sensors, "
         "sensorAliases, logicalDevices, sensorDeviceIndexes, staticMetadata, faults, got an unknown key\n"},
        {"run phone.json --library none.so",
         "zvcam: " + folder + "/none.so: cannot open shared object file: No such file or directory\n"},
        {"run phone.json --library '" NO_PLUGIN "'",
         "zvcam: " NO_PLUGIN ": undefined symbol: _ZN24CameraPlatformInfoZelvan14CreateInstanceEv\n"},
        {"run phone.json --root phone.json",
         "zvcam: " + folder + "/phone.json: cannot use the folder as a phone's root: Not a directory\n"},
        {kFake + "--json none/report", "zvcam: cannot write none/report: No such file or directory\n"},
        {kFake + "--json /dev/full", "zvcam: cannot write /dev/full: No space left on device\n"},
        {kFake + ">/dev/full", "zvcam: cannot write standard output: No space left on device\n"},
        {kFake + "--json - >/dev/full", "zvcam: cannot write standard output: No space left on device\n"},
    };
    for (const auto& [arguments, error] : kCases) {
        const Result result = zvcam(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_EQ(result.error, error) << arguments;
        EXPECT_THAT(result.out, IsEmpty()) << arguments;
    }
    EXPECT_FALSE(fs::exists(file("made"))) << "a bad phone file has run";
}

TEST_F(Zvcam, HelpAndVersion) {
    EXPECT_THAT(zvcam("--help").out, HasSubstr("Exit codes: 0 success; 1 the plug-in threw; 2 "));
    const Result help = zvcam("run --help");
    EXPECT_EQ(help.exitCode, 0);
    for (const char* option : {"PHONE", "--json FILE", "--root DIR", "--set NAME=VALUE", "--library FILE"}) {
        EXPECT_THAT(help.out, HasSubstr(option));
    }
    EXPECT_THAT(zvcam("--version").out, testing::MatchesRegex("zvcam [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(Zvcam, BootsTheHealthyPhoneWithItsOwnPlugin) {
    const Result result = zvcam("run '" PHONES "/halcyrion.json' --json -");
    ASSERT_EQ(result.exitCode, 0) << result.error;
    const nlohmann::json report = nlohmann::json::parse(result.out);
    EXPECT_EQ(report["phone"], "halcyrion");
    std::multiset<int> modulesRead;
    for (const nlohmann::json& read : report["eepromReads"]) {
        modulesRead.insert(read["deviceBit"].get<int>());
    }
    EXPECT_THAT(modulesRead, testing::ElementsAre(1, 2, 4, 8));
    // Metadata of mixed types would have been complained of.
    for (const nlohmann::json& line : report["log"]) {
        EXPECT_NE(line["tag"], "VirtualPhone") << line;
    }
}

}  // namespace
