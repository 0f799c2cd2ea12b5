#include <algorithm>
#include <array>
#include <pty.h>
#include <regex>
#include <unistd.h>
#include <utility>

#include "tests/zvcam/Zvcam.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST_F(Zvcam, AFileThatBecomesTooLargeIsOneThatCannotBeWritten) {
    // The shell counts in blocks of 512 bytes.
    EXPECT_EQ(StatusOf("ulimit -f 1 && " + program() + kFake + "--json report.json >/dev/null 2>error"), 2);
    EXPECT_EQ(ReadText(file("error")), "zvcam: cannot write report.json: File too large\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(file("")), {}), 3);
}

/// While its report is written, an ending signal leaves nothing of it.
TEST_F(Zvcam, AnEndingSignalLeavesNoDraft) {
    const std::string run = program() + "run '" PHONES "/halcyrion.json' --json report.json >out & ";
    int ended = 0;
    for (int i = 0; i < 30; ++i) {
        const std::string wait = "sleep 0.0" + std::to_string(i / 10) + std::to_string(i % 10);
        const int status = StatusOf(run + wait + "; kill -TERM $!; wait $!");
        EXPECT_THAT(status, testing::AnyOf(0, 128 + SIGTERM));
        ended += status == 0 ? 0 : 1;
        for (const fs::directory_entry& entry : fs::directory_iterator(file(""))) {
            EXPECT_THAT(entry.path().filename().string(),
                        testing::AnyOf("phone.json", "report.json", "tmp", "out", "error"));
        }
    }
    EXPECT_GT(ended, 0);
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
    ASSERT_EQ(zvcam("run '" PHONES "/halcyrion.json' --json report.json").exitCode, 0);
    int refused = 0;
    const auto loads = [&](int kilobytes, const std::string& source) {
        const std::string run = program() + "run " + source + " >out 2>error";
        const int status = StatusOf("ulimit -v " + std::to_string(kilobytes) + " && " + run);
        if (status == 127) {
            return false;  // the loader cannot even load the program
        }
        const std::string error = ReadText(file("error"));
        // 1 where it is the plug-in that cannot have it.
        EXPECT_THAT(status, testing::AnyOf(0, 1, 2)) << kilobytes << error;
        EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), status == 0 ? 0 : 1) << error;
        EXPECT_THAT(error, testing::Not(HasSubstr("bad_alloc")));
        refused += status == 2 ? 1 : 0;
        return true;
    };
    for (const char* const source : {"'" PHONES "/halcyrion.json'", "report.json"}) {
        int least = 40000;
        for (int kilobytes = least; kilobytes >= 8000 && loads(kilobytes, source); kilobytes -= 1000) {
            least = kilobytes;
        }
        // With hardly more than is loaded, there is none for what precedes main(), nor for an exception.
        for (int kilobytes = least - 20; kilobytes > least - 1000; kilobytes -= 20) {
            loads(kilobytes, source);
        }
        EXPECT_GT(std::exchange(refused, 0), 0);
    }
}
#endif

/// Without them a boot could not tell what it published, nor remove what it laid.
TEST_F(Zvcam, TooFewOpenFilesAreSaid) {
    const std::string run = program() + "getprop phone.json >out 2>error";
    EXPECT_EQ(StatusOf("ulimit -n 20 && " + run), 2);
    EXPECT_EQ(ReadText(file("error")),
              "zvcam: at most 20 files may be open at a time (`ulimit -n`), expected 64 or more\n");
    EXPECT_EQ(StatusOf("ulimit -S -n 20 && " + run), 0);
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
        {"fleet foo", "zvcam: no command is called \"foo\"; `zvcam fleet --help` lists them\n"},
        {"phone chek phone.json", "zvcam: no command is called \"chek\"; near is \"check\"\n"},
        {"fleet -q foo", "zvcam: no command is called \"foo\"; `zvcam fleet --help` lists them\n"},
        {"fleet --foo", "zvcam: no option is called \"--foo\"; `zvcam fleet --help` lists them\n"},
        {"fleet run --foo", "zvcam: no option is called \"--foo\"; `zvcam fleet run --help` lists them\n"},
        {"run phone.json --json --html",
         usage(" run", "--json: expected a name, got \"--html\"; a file of that name is \"./--html\"")},
        {"dumpsys phone.json --device 4 --library '" FAKE_PLUGIN "' --set test.ending=throw",
         "zvcam: the plug-in threw: off the end: no device \"4\" was updated; none was\n"},
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

/// What a program leaves on a terminal.
std::string OnATerminal(const std::string& command) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    EXPECT_GE(child, 0) << "there is no terminal to be had";
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

}  // namespace
