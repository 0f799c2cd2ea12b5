#include <array>
#include <csignal>
#include <map>
#include <pty.h>
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
    const pid_t program = fork();
    if (program == 0) {
        const std::string command = "cd '" + file("").string() + "' && exec '" ZVCAM "' " + kFake +
                                    "--set test.ending=crash >out 2>error";
        execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        _exit(127);
    }
    std::signal(SIGCHLD, SIG_DFL);
    waitpid(program, nullptr, 0);
    EXPECT_EQ(ReadText(file("error")), "zvcam: the plug-in was ended by SIGSEGV\n");
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
        const std::string run = kFake + "--timeout 0.3 --set test.ending=" + ending;
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

TEST_F(Zvcam, AFileThatBecomesTooLargeIsOneThatCannotBeWritten) {
    // The shell counts in blocks of 512 bytes.
    const std::string run = " && ulimit -f 1 && TMPDIR=tmp '" ZVCAM "' " + kFake + "--json report.json";
    EXPECT_EQ(
        WEXITSTATUS(std::system(("cd '" + file("").string() + "'" + run + " >/dev/null 2>error").c_str())),
        2);
    EXPECT_EQ(ReadText(file("error")), "zvcam: cannot write report.json: File too large\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(file("")), {}), 3);
}

/// While a report is written to a pipe that nobody empties, or to its draft, an ending signal leaves nothing.
TEST_F(Zvcam, AnEndingSignalLeavesNoDraft) {
    const std::string phone = " run '" PHONES "/halcyrion.json' --json report.json >out & ";
    for (int i = 0; i < 30; ++i) {
        const std::string wait = "sleep 0.0" + std::to_string(i / 10) + std::to_string(i % 10);
        std::system(("cd '" + file("").string() + "' && TMPDIR=tmp '" ZVCAM "'" + phone + wait +
                     "; kill -TERM $!; wait $!")
                        .c_str());
        for (const fs::directory_entry& entry : fs::directory_iterator(file(""))) {
            EXPECT_THAT(entry.path().filename().string(),
                        testing::AnyOf("phone.json", "report.json", "tmp", "out", "error"));
        }
    }
}

TEST_F(Zvcam, AskedForWhatThereIsNotSaysSo) {
    const std::string phone = "'" PHONES "/halcyrion.json' ";
    const auto errorOf = [&](const std::string& command) {
        const Result result = zvcam(command);
        EXPECT_EQ(result.exitCode, 0);
        return result.error;
    };
    // Devices without the tag are not even named.
    const std::string some = zvcam("dumpsys " + phone + "--tag SAT_ZOOM_INFO").out;
    EXPECT_THAT(some, testing::HasSubstr("== device 4 (BACK_SAT"));
    EXPECT_THAT(some, testing::Not(testing::ContainsRegex(" tags\n==")));
    EXPECT_THAT(some, testing::Not(testing::HasSubstr("== device 1 ")));
    EXPECT_EQ(zvcam("dumpsys " + phone + "--tag FAKESATSIZE --device 1").out, "");
    EXPECT_EQ(errorOf("dumpsys " + phone + "--tag FAKESATSIZE --device 1"),
              "zvcam: device 1 has no FAKESATSIZE; `zvcam why` tells the reason\n");
    EXPECT_EQ(errorOf("dumpsys " + phone + "--tag 0x7"),
              "zvcam: no device has 0x7; `zvcam why` tells the reason\n");
    EXPECT_EQ(errorOf("logcat " + phone + "--step DumpEepromRawData"), "");
    EXPECT_EQ(errorOf("logcat phone.json --step SetFuseIdProp --library '" FAKE_PLUGIN "'"),
              "zvcam: SetFuseIdProp logged nothing in this boot\n");
}

#ifndef NO_MEMORY_LIMITS
TEST_F(Zvcam, MemoryThatCannotBeHadIsOneLine) {
    const std::string run = " '" ZVCAM "' run '" PHONES "/halcyrion.json' 2>'" + file("error").string() + "'";
    int refused = 0;
    for (int megabytes = 8; megabytes < 40; ++megabytes) {
        const int status = std::system(("cd '" + file("").string() + "' && ulimit -v " +
                                        std::to_string(1000 * megabytes) + " && TMPDIR=tmp" + run + " >out")
                                           .c_str());
        const std::string error = ReadText(file("error"));
        // Below, the loader cannot even load the program.
        if (WEXITSTATUS(status) != 127) {
            // 1 where it is the plug-in that cannot have it.
            EXPECT_THAT(WEXITSTATUS(status), testing::AnyOf(0, 1, 2)) << megabytes << error;
            EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), WEXITSTATUS(status) == 0 ? 0 : 1)
                << error;
            EXPECT_THAT(error, testing::Not(HasSubstr("bad_alloc")));
            refused += WEXITSTATUS(status) == 2 ? 1 : 0;
        }
    }
    EXPECT_GT(refused, 0);
}
#endif

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

TEST_F(Zvcam, WhatCannotBeUsedEndsWithTwo) {
    const std::string folder = file("").parent_path().string();
    const auto usage = [](const char* command, const std::string& error) {
        return "zvcam: " + error + "; `zvcam" + command + " --help` tells more\n";
    };
    write("bad.json", R"({"sensor": []})");
    write("side.json", R"({"files": {"/x": {"file": "side"}}})");
    write("side", "x");
    write("report.json",
          R"({"phone": "p", "properties": [], "files": {}, "devices": [], "thirdCalibration": [],
                            "eepromReads": [], "log": []})");
    const std::string overReport =
        " is a report: its boot is over, and --set, --root, --clean-root, --library and --timeout change "
        "nothing\n";
    const std::pair<std::string, std::string> kCases[] = {
        {"", usage("", "A subcommand is required")},
        {"rum", "zvcam: no command is called \"rum\"; near is \"run\"\n"},
        {"foo", "zvcam: no command is called \"foo\"; `zvcam --help` lists them\n"},
        {"--foo", "zvcam: no option is called \"--foo\"; `zvcam --help` lists them\n"},
        {"run", usage(" run", "P is required")},
        {"run phone.json --clean-root", usage(" run", "--clean-root requires --root")},
        {"calibration phone.json --root made",
         usage(" calibration", "--set, --root, --clean-root, --library or --timeout requires --phone")},
        {"run phone.json other.json", usage(" run", "The following argument was not expected: other.json")},
        {"run phone.json --set name", usage(" run", "--set: expected NAME=VALUE, got \"name\"")},
        {"run phone.json --set n=" + std::string(92, 'x'),
         usage(" run", "--set: expected a value of at most 91 characters, got 92")},
        {"run none.json",
         "zvcam: none.json: expected a phone file or a report, got nothing that can be read (No such file or "
         "directory)\n"},
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
        {kFake + "--json phone.json", "zvcam: cannot write phone.json: the run reads it\n"},
        {kFake + "--json '" FAKE_PLUGIN "'", "zvcam: cannot write " FAKE_PLUGIN ": the run reads it\n"},
        {"run side.json --json ./side", "zvcam: cannot write ./side: the run reads it\n"},
        {kFake + ">/dev/full", "zvcam: cannot write standard output: No space left on device\n"},
        {kFake + ">&-", "zvcam: cannot write standard output: Bad file descriptor\n"},
        {kFake + "--json kept.json >&-", "zvcam: cannot write standard output: Bad file descriptor\n"},
        {"run - <&-",
         "zvcam: standard input: expected a phone file or a report, got nothing that can be read (Bad file "
         "descriptor)\n"},
        {kFake + "--json - >/dev/full", "zvcam: cannot write standard output: No space left on device\n"},
        {"run --help >/dev/full", "zvcam: cannot write standard output: No space left on device\n"},
        {"run phone.json --timeout 1e9",
         usage(" run", "--timeout: expected a number of seconds from 0.001 to 1000000, got \"1e9\"")},
        {"dumpsys phone.json --tag ROLED",
         "zvcam: --tag: expected a tag's name, the end of one, or a number, got \"ROLED\"; near is "
         "\"ZELVAN_CAMERA_ROLEID\"\n"},
        {"dumpsys phone.json --tag FOO",
         "zvcam: --tag: expected a tag's name, the end of one, or a number, got \"FOO\"\n"},
        {"dumpsys phone.json --provider x",
         usage(" dumpsys", "--provider: expected a number such as 0x40007, got \"x\"")},
        {"logcat phone.json --step SetFuseldProp",
         "zvcam: --step: no operation is called \"SetFuseldProp\"; near is \"SetFuseIdProp\"\n"},
        {"run report.json --set a=b", "zvcam: report.json" + overReport},
        {"diff report.json report.json --root r", "zvcam: report.json" + overReport},
        {"logcat phone.json T:X",
         usage(" logcat",
               "FILTERSPEC: expected TAG, TAG:PRIORITY or *:PRIORITY (V, D, I, W, E, F, S), got \"T:X\"")},
        {"streams phone.json --format YUX",
         usage(" streams",
               "--format: expected a format such as YCBCR_420_888, YUV, JPEG or 0x23, got \"YUX\"")},
        {"why '" PHONES "/halcyrion.json' CALIBTOOL",
         "zvcam: \"CALIBTOOL\" may be ZELVAN_CALIBTOOL_TYPE, ZELVAN_CALIBTOOL_FILE_NAME and "
         "ZELVAN_CALIBTOOL_SENSOR_DRV_VALUES\n"},
        {"streams '" PHONES "/fieldtrouble.json' --device 8",
         "zvcam: no device \"8\" was updated; there are 0, 0/0, 0/2, 1, 2, 3, 4, 4/0, 4/2, 5, 6, 6/0, 6/2, "
         "7\n"},
        {"phone new -o tmp --force", "zvcam: cannot write tmp: expected a file, got a folder\n"},
        {"run phone.json --html tmp", "zvcam: cannot write tmp: expected a file, got a folder\n"},
        {"diff - -", "zvcam: standard input holds one boot, not two\n"},
    };
    for (const auto& [arguments, error] : kCases) {
        const Result result = zvcam(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_EQ(result.error, error) << arguments;
        EXPECT_THAT(result.out, IsEmpty()) << arguments;
    }
    EXPECT_FALSE(fs::exists(file("made"))) << "a bad phone file has run";
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

/// What a program leaves on a terminal.
std::string OnATerminal(const std::string& command) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        _exit(127);
    }
    std::string shown;
    std::array<char, 4096> buffer;
    // The end of a terminal that nobody holds any more is an error.
    for (ssize_t count = 0; (count = read(terminal, buffer.data(), buffer.size())) > 0;) {
        shown.append(buffer.data(), static_cast<std::size_t>(count));
    }
    close(terminal);
    waitpid(child, nullptr, 0);
    return shown;
}

TEST_F(Zvcam, ColourIsForTerminalsThatShowItAndPeopleWhoWantIt) {
    const std::string run =
        " TMPDIR='" + file("tmp").string() + "' '" ZVCAM "' run '" PHONES "/halcyrion.json'";
    const std::string plain = zvcam("run '" PHONES "/halcyrion.json'").out;
    const auto shown = [&](const std::string& environment) {
        return std::regex_replace(OnATerminal("env -u TERM -u NO_COLOR " + environment + run),
                                  std::regex("\r\n"), "\n");
    };
    for (const char* const without : {"", "TERM=dumb", "TERM=xterm NO_COLOR=1"}) {
        EXPECT_EQ(shown(without), plain) << without;
    }
    const std::string painted = shown("TERM=xterm NO_COLOR=");
    EXPECT_THAT(painted, StartsWith("\x1B[1mPhone halcyrion: "));
    EXPECT_EQ(std::regex_replace(painted, std::regex("\x1B\\[[0-9]+m"), ""), plain);
}

TEST_F(Zvcam, HelpAndVersion) {
    EXPECT_THAT(zvcam("--help").out, HasSubstr("Exit status: 0; 1 the boot did not return"));
    const Result help = zvcam("run --help");
    EXPECT_EQ(help.exitCode, 0);
    for (const char* option :
         {"P FILE REQUIRED", "--all", "--json FILE", "--root DIR", "--set NAME=VALUE", "--library FILE"}) {
        EXPECT_THAT(help.out, HasSubstr(option));
    }
    EXPECT_THAT(zvcam("--version").out, testing::MatchesRegex("zvcam [0-9]+\\.[0-9]+\\.[0-9]+\n"));
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
