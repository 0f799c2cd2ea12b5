#include <csignal>
#include <map>
#include <regex>
#include <set>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "tests/zvcam/Zvcam.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

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
    EXPECT_THAT(written.out, StartsWith("Phone small: 1 error line\n"));
    const Result again = zvcam("run report.json --json -");
    EXPECT_EQ(again.out, printed.out);
}

TEST_F(Zvcam, AllIsForPeople) {
    const Result result = zvcam("run phone.json --all --library '" FAKE_PLUGIN "' --set test.ending=");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.error, IsEmpty());
    EXPECT_EQ(result.out,
              R"(Phone small: 1 error line
  error  refused: the platform refused to set it

Modules: the boot did not come to name them
Calibration
  the boot did not come to it
Devices: none was updated
Published: 1 property, 1 file, 1 device set. `zvcam why` explains each.

Properties set (2)
  test.ending  =
  refused      = \x1B[1m\xFF   [refused]

Files written (1)
  /data/vendor/camera/made  0644  4 bytes: 6D 61 64 65

Device sets (1)
== provider 0x40007: 6 tags
    (unknown) (0x1): float[3]
      [0.6 24 -inf]
    (unknown) (0x2): int64[7]
      [-9000000000 100000000]
      [200000000 300000000]
      [400000000 500000000]
      [600000000]
    (unknown) (0x3): memory[2]
      [2 bytes: 01 AB]
      [0 bytes]
    (unknown) (0x4): byte[1]
      [255]
    (unknown) (0x5): none[0]
    ZELVAN_CAMERA_ROLEID (0x91010021): int32[1]
      [60]

Third calibration hand-overs (1)
  3 bytes: 01 02 FF

EEPROM reads (1)
  chip 0x707, device bit 0x1: 3 bytes from offset 2, 0 came back

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
        EXPECT_EQ(result.error, "zvcam: the plug-in threw: " + exception + "\n");
        EXPECT_THAT(result.out,
                    StartsWith("THE BOOT DID NOT RETURN: the plug-in threw: " + exception + "\nPhone small"));
        const nlohmann::json report = nlohmann::json::parse(ReadText(file("report.json")));
        EXPECT_EQ(report["exception"], exception);
        EXPECT_EQ(report["ended"], nlohmann::json({{"how", "threw"}}));
        EXPECT_EQ(report["properties"][0]["value"], ending);
        EXPECT_EQ(report["log"].size(), 2U);
    }
}

/// Whoever started the program may ignore its children: how a boot ended shows all the same.
TEST_F(Zvcam, AnIgnoredEndOfAChildIsAnEnd) {
    std::signal(SIGCHLD, SIG_IGN);
    const pid_t child = fork();
    if (child == 0) {
        const std::string command = program() + kFake + "--set test.ending=crash >out 2>error";
        execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        _exit(127);
    }
    std::signal(SIGCHLD, SIG_DFL);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(ReadErrors(file("error")), "zvcam: the plug-in was ended by SIGSEGV\n");
}

/// Before anything is booted, outputs are compared with what the phone file names.
TEST_F(Zvcam, InputsAreSeenInAPhoneFileOfAnyDepth) {
    std::string deep;
    for (int i = 0; i < 500000; ++i) {
        deep += R"({"a":[)";
    }
    write("deep.json", deep);
    write("existing", "");
    const std::string lines = R"(expected at most 64 levels of objects and arrays, got more
)";
    for (const std::string command : {"run deep.json --json existing", "influence deep.json"}) {
        const Result result = zvcam(command);
        EXPECT_EQ(result.exitCode, 2) << command;
        EXPECT_THAT(result.error, AllOf(StartsWith("zvcam: deep.json: /a/0/a/0"), testing::EndsWith(lines)));
    }
    write("side", "1");
    write("names.json", R"({"name": "file", "files": {"/a": {"bytes": "file", "file": "side"}}})");
    EXPECT_EQ(zvcam("run names.json --json side").error, "zvcam: cannot write side: the run reads it\n");
}

/// However the boot ends: one line, the status, the summary and the report as far as the boot came.
TEST_F(Zvcam, RunTellsOfABootThatDidNotReturn) {
    const std::pair<std::string, std::pair<std::string, nlohmann::json>> kEndings[] = {
        {"crash", {"was ended by SIGSEGV", {{"how", "signal"}, {"signal", "SIGSEGV"}}}},
        {"abort", {"was ended by SIGABRT", {{"how", "signal"}, {"signal", "SIGABRT"}}}},
        {"exit", {"exited with status 0", {{"how", "exited"}, {"status", 0}}}},
        {"hang", {"did not return within 0.3 seconds", {{"how", "timeout"}, {"seconds", 0.3}}}},
    };
    for (const auto& [ending, told] : kEndings) {
        const std::string limit = ending == "hang" ? "--timeout 0.3 " : "";
        const std::string run = kFake + limit + "--set test.ending=" + ending;
        const Result result = zvcam(run + " --json report.json");
        EXPECT_EQ(result.exitCode, 1) << ending;
        EXPECT_EQ(result.error, "zvcam: the plug-in " + told.first + "\n");
        EXPECT_THAT(result.out, StartsWith("THE BOOT DID NOT RETURN: the plug-in " + told.first + "\nPhone"));
        const nlohmann::json report = nlohmann::json::parse(ReadText(file("report.json")));
        EXPECT_EQ(report["ended"], told.second);
        EXPECT_EQ(report["log"].size(), 2U);
        EXPECT_EQ(report["files"].size(), 1U);
        EXPECT_EQ(zvcam("run report.json").out, result.out);
        EXPECT_EQ(zvcam(run + " --json -").exitCode, 1) << ending;
    }
    const Result printed = zvcam(kFake + "--set test.ending=print --json -");
    EXPECT_EQ(printed.error, "printed\n");
    EXPECT_THAT(printed.out, StartsWith("{\n"));
}

TEST_F(Zvcam, RootIsKeptAndSetComesBeforeThePhoneFile) {
    write("phone.json", R"({"properties": {"test.ending": "file"}, "files": {"/laid": {"text": "x"}}})");
    const Result result = zvcam(kFake + "--root root/of/phone --set=test.ending=a=b --set other=");
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_THAT(result.out, StartsWith("Phone without a name: 1 error line\n"));
    EXPECT_EQ(zvcam("getprop phone.json --library '" FAKE_PLUGIN "' --set test.ending=a=b test.ending").out,
              "a=b\n");
    EXPECT_EQ(ReadText(file("root/of/phone/laid")), "x");
    EXPECT_EQ(ReadText(file("root/of/phone/data/vendor/camera/made")), "made");
}

/// What the platform refused was asked for, whatever the operation met before.
TEST_F(Zvcam, WhySaysOfWhatWasRefusedThatAndNothingElse) {
    write("refusing.json", R"({"faults": {"propertySet": ["persist.vendor.camera.oisAlgoParam"]}})");
    EXPECT_THAT(zvcam("why refusing.json oisAlgoParam").out,
                StartsWith("persist.vendor.camera.oisAlgoParam was not published.\n"
                           "The platform refused it: 0,0,0,0\n"
                           "OverriderOisCamCalData asked it to store this.\n"
                           "It says: "));
    write("refusing.json", R"({"logicalDevices": [{}], "faults": {"metadataUpdate": {"0x91010021": -5}}})");
    EXPECT_THAT(zvcam("why refusing.json ZELVAN_CAMERA_ROLEID").out,
                testing::HasSubstr("The platform refused it: -5\n"
                                   "MetadataUpdateRoleId asked it to store this.\n"));
}

TEST_F(Zvcam, AKeptRootOfAnEarlierBootChangesNoAnswer) {
    const std::string phone = "'" PHONES "/halcyrion.json'";
    const std::string why = "why " + phone + " dcal.wu.data";
    const std::string first = zvcam(why + " --root kept").out;
    EXPECT_THAT(first, StartsWith("/data/vendor/camera/com.zelvan.dcal.wu.data was published by "
                                  "DualCameraDataDumpFile.\n  0600  4096 bytes of 0x15\n"));
    const std::string hint =
        "2 files under the root lay there before the boot; --clean-root removes what is there first.\n";
    EXPECT_EQ(
        zvcam(why + " --root kept").out,
        std::string(first).replace(first.find(".\n"), 1, ", with the content that it had before the boot.") +
            hint);
    EXPECT_EQ(zvcam(why + " --root kept --clean-root").out, first);
    // A report says so too.
    zvcam("run " + phone + " --root kept --json report");
    EXPECT_THAT(zvcam("why report dcal.wu.data").out, testing::EndsWith(hint));
    // Each phone of two has a root of its own: what one leaves there the other does not find.
    const std::string trouble = "'" PHONES "/fieldtrouble.json'";
    const Result apart = zvcam("diff " + phone + " " + trouble + " --root other");
    EXPECT_EQ(apart.out, zvcam("diff " + phone + " " + trouble).out);
    EXPECT_EQ(apart.error, "");
    const Result same = zvcam("diff " + phone + " " + phone + " --root other");
    EXPECT_EQ(same.exitCode, 0);
    EXPECT_EQ(same.out, "");
    EXPECT_THAT(same.error, AllOf(StartsWith("zvcam: A: 2 files under the root "), HasSubstr("zvcam: B: ")));
    zvcam("run " + phone + " --root kept --json kept.json");
    EXPECT_EQ(zvcam("diff kept.json " + phone).out, "");
}

/// What differs from boot to boot is left out: thread ids and addresses.
std::string Lasting(const std::string& text) {
    return std::regex_replace(text, std::regex("\\( *[0-9]+\\)(?=: \\(|\\[)|0x[0-9a-f]{9,}"), "#");
}

TEST_F(Zvcam, ReportAnswersAsThePhoneDoes) {
    for (const std::string name : {"halcyrion", "fieldtrouble"}) {
        const std::string phone = "'" PHONES "/" + name + ".json' ";
        ASSERT_EQ(zvcam("run " + phone + "--json report.json").exitCode, 0);
        for (const std::pair<const char*, const char*>& command :
             std::vector<std::pair<const char*, const char*>>{
                 {"run", ""},
                 {"run", "--html -"},
                 {"getprop", ""},
                 {"dumpsys", "--device 4"},
                 {"dumpsys", "--provider 7"},
                 {"logcat", "--device 4 *:I"},
                 {"streams", "--csv"},
                 {"streams", ""},
                 {"why", "existmask"},
                 {"why", "--device 5 CALIBTOOL_SENSOR_DRV_VALUES"}}) {
            const auto answer = [&](const std::string& source) {
                const Result result = zvcam(std::string(command.first) + " " + source + " " + command.second);
                EXPECT_EQ(result.exitCode, 0) << command.first << result.error;
                return Lasting(result.out);
            };
            const std::string ofPhone = answer(phone);
            EXPECT_FALSE(ofPhone.empty()) << command.first;
            EXPECT_EQ(answer("report.json"), ofPhone) << command.first << " " << command.second;
            EXPECT_EQ(answer("- <report.json"), ofPhone) << command.first << " " << command.second;
        }
        EXPECT_EQ(zvcam("diff report.json " + phone).out, "");
    }
    const Result differing = zvcam("diff report.json '" PHONES "/halcyrion.json'");
    EXPECT_EQ(differing.exitCode, 1);
    EXPECT_THAT(differing.out, HasSubstr("  - 0,0,0,0\n  + 9000,9100,5,6\n"));
}

TEST_F(Zvcam, ReportTakesItsPlaceAsAWholeAndColourIsForTerminals) {
    write("report.json", "before");
    fs::create_symlink("report.json", file("link.json"));
    EXPECT_EQ(zvcam(kFake + "--json link.json").exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(file("link.json")));
    EXPECT_THAT(ReadText(file("report.json")), StartsWith("{\n  \"format\": 1"));
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(file(""))) {
        names.insert(entry.path().filename().string());
    }
    EXPECT_THAT(names, testing::UnorderedElementsAre("phone.json", "report.json", "link.json", "tmp", "out",
                                                     "error"));
    EXPECT_THAT(ReadText(file("out")), testing::Not(HasSubstr("\x1B")));
}

}  // namespace
