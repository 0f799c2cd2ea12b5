#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

#include "tests/zvcam/FleetCommand.h"
#include "zvcam/fleet/Database.h"
#include "zvcam/fleet/FleetDatabase.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;
using Lines = std::vector<std::string>;

TEST_F(FleetCommand, KilledRunGoesOnWhereItWas) {
    make("made", 300);
    runAndKill("made", "killed.sqlite", SIGKILL);
    EXPECT_EQ(runAndKill("made", "killed.sqlite", SIGTERM),
              "zvcam: interrupted; killed.sqlite holds what was booted, and --resume goes on\n");
    const std::int64_t before = phonesIn("killed.sqlite");
    EXPECT_LT(before, 300);
    const Result resumed = run("made", "killed.sqlite", "--resume");
    ASSERT_EQ(resumed.exitCode, 0) << resumed.error;
    EXPECT_THAT(resumed.out, HasSubstr("; " + std::to_string(before) + " were done before"));
    ASSERT_EQ(run("made", "whole.sqlite").exitCode, 0);
    EXPECT_EQ(contentOf("killed.sqlite"), contentOf("whole.sqlite"));
}

TEST_F(FleetCommand, DatabaseHasOneRunAtATime) {
    write("list", "phone.json\n");
    {
        zvcam::FleetWriter writer(
            file("fleet.sqlite"), /*resume=*/false,
            {.source = file("list").string(), .shard = "", .options = "", .plugin = {}});
        const Result second = run("list", "fleet.sqlite", "--resume");
        EXPECT_EQ(second.exitCode, 2);
        EXPECT_EQ(second.error, "zvcam: fleet.sqlite: another run is writing it\n");
    }
    EXPECT_EQ(run("list", "fleet.sqlite", "--resume").exitCode, 0);
    EXPECT_EQ(phonesIn("fleet.sqlite"), 1);
}

TEST_F(FleetCommand, BootsThatDoNotReturnAreCountedApart) {
    std::filesystem::copy_file(file("phone.json"), file("other.json"));
    write("list", "phone.json\nmissing.json\nother.json\n");
    const std::string throwing = "--library '" FAKE_PLUGIN "' --set test.ending=throw ";
    EXPECT_THAT(run("list", "fleet.sqlite", throwing).out,
                HasSubstr("; 1 cannot be read; 2 did not return.\n"));
    const Result report = zvcam("fleet report fleet.sqlite --html fleet.html");
    EXPECT_THAT(report.out, StartsWith("Fleet fleet.sqlite: 3 phones, 0 with errors, 0 more with warnings, 0 "
                                       "with neither, 2 did not return, 1 not booted\n"));
    EXPECT_THAT(ReadText(file("fleet.html")),
                AllOf(HasSubstr("0 with neither"), HasSubstr("2 did not return")));
    // What was done before is told by the run that did it.
    EXPECT_THAT(run("list", "fleet.sqlite", throwing + "--resume").out,
                StartsWith("0 phones; 3 were done before.\n"));
}

TEST_F(FleetCommand, WhatThisMachineCannotBootIsSaidAndTriedAgain) {
    write("big.json", R"({"files": {"/data/big": {"file": "big"}}})");
    write("big", std::string(3'000'000, 'x'));
    write("list", "big.json\nphone.json\n");
    // Files of such a size cannot be laid here, for a while.
    rlimit usual{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &usual), 0);
    const rlimit small = {.rlim_cur = 1'000'000, .rlim_max = usual.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const Result limited = run("list", "fleet.sqlite");
    setrlimit(RLIMIT_FSIZE, &usual);
    EXPECT_EQ(limited.exitCode, 2);
    EXPECT_THAT(limited.out, StartsWith("1 phone in "));
    EXPECT_EQ(limited.error, "zvcam: could not boot 1 phone here; --resume tries again\n");
    EXPECT_THAT(zvcam("fleet report fleet.sqlite").out,
                HasSubstr("failed  /data/big: cannot lay the file: File too large\n"));
    const Result resumed = run("list", "fleet.sqlite", "--resume");
    EXPECT_EQ(resumed.exitCode, 0) << resumed.error;
    EXPECT_THAT(resumed.out, StartsWith("1 phone in "));
    EXPECT_THAT(resumed.out, HasSubstr("; 1 was done before.\n"));
}

TEST_F(FleetCommand, ResumeKeepsToItsSourceAndPlugin) {
    make("made", 2, "lsc=1");
    make("other", 3, "lsc=1");
    ASSERT_EQ(run("made", "fleet.sqlite").exitCode, 0);
    const std::string before = ReadText(file("fleet.sqlite"));
    const Result source = run("other", "fleet.sqlite", "--resume");
    EXPECT_EQ(source.exitCode, 2);
    const std::string cannot = "zvcam: fleet.sqlite: cannot go on with ";
    EXPECT_EQ(source.error,
              cannot + "phones of another source: it holds phones of " + file("made").string() + "\n");
    const Result plugin = run("made", "fleet.sqlite", "--resume --library '" FAKE_PLUGIN "'");
    EXPECT_EQ(plugin.exitCode, 2);
    EXPECT_THAT(plugin.error,
                testing::MatchesRegex(cannot + "a plug-in of build id [0-9a-f]+: it holds phones of build id "
                                               "[0-9a-f]+\n"));
    const std::string otherOptions = cannot + "other options: it holds phones booted with";
    EXPECT_EQ(run("made", "fleet.sqlite", "--resume --set a=b").error,
              otherOptions + "out --set and --like\n");
    EXPECT_EQ(ReadText(file("fleet.sqlite")), before);
    EXPECT_EQ(run("./made/", "fleet.sqlite", "--resume --shard 1/2").exitCode, 0);
}

TEST_F(FleetCommand, ResumeKeepsToWhatChangesPhonesHoweverItIsGiven) {
    // A list may begin with a byte order mark, and a path as a comment of a phone file does.
    write("list", "\xEF\xBB\xBF/" + file("phone.json").string() + "\n");
    ASSERT_EQ(run("list", "fleet.sqlite", "--set c=d --set 'a=b --set x=y' --like phone.json").exitCode, 0);
    const std::string changes =
        "--set 'a=b --set x=y' --set 'c=d' --like '" + file("phone.json").string() + "'";
    EXPECT_THAT(zvcam("fleet report fleet.sqlite").out, HasSubstr("/list, with " + changes + "\n"));
    const Result other =
        run("list", "fleet.sqlite", "--resume --set a=b --set c=d --set x=y --like phone.json");
    EXPECT_EQ(other.exitCode, 2);
    EXPECT_EQ(other.error,
              "zvcam: fleet.sqlite: cannot go on with other options: it holds phones booted with " + changes +
                  "\n");
    const std::string same = "--resume --like ./phone.json --set a=1 --set 'a=b --set x=y' --set c=d";
    EXPECT_EQ(run("list", "fleet.sqlite", same).exitCode, 0);
    ASSERT_EQ(zvcam("fleet merge merged.sqlite fleet.sqlite").exitCode, 0);
    EXPECT_EQ(csv("merged.sqlite", "runs"), csv("fleet.sqlite", "runs"));
}

TEST_F(FleetCommand, EntriesThatCannotBeReadAreRows) {
    write("cut.json", "{");
    write("wrong.json", R"({"sensors": 7})");
    write("report.json", zvcam("run phone.json --json -").out);
    std::filesystem::create_directories(file("pulled/unit7"));
    write("pulled/unit7/getprop.txt", "[ro.serialno]: [7]\n");
    std::filesystem::create_directories(file("pulled/unit8/vendor/etc/camera"));
    write("pulled/unit8/vendor/etc/camera/large", "");
    std::filesystem::resize_file(file("pulled/unit8/vendor/etc/camera/large"),
                                 (std::uintmax_t{64} << 20) + 1);
    std::filesystem::create_directory(file("other"));
    ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
    write("list",
          "phone.json\ncut.json\r\n\nwrong.json\nmissing.json\nother\npipe\n-\nreport.json\npulled/./unit7/\n"
          ".//phone.json\npulled/unit8\n");
    const Result result = run("list", "fleet.sqlite");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, AllOf(StartsWith("10 phones in "),
                                  HasSubstr("; repeated in the list: 1; 8 cannot be read.")));
    EXPECT_EQ(result.error, "");
    Lines lines;
    zvcam::Database database = zvcam::OpenFleet(file("fleet.sqlite"));
    zvcam::Statement phones(database, "SELECT path, kind, name, ended, reason FROM phones ORDER BY path");
    while (phones.step()) {
        lines.push_back(phones.text(0) + "|" + phones.text(1) + "|" + phones.text(2) + "|" + phones.text(3) +
                        "|" + phones.text(4));
    }
    const std::string none = "|phone file||unread|expected a phone file or a folder, got ";
    EXPECT_EQ(
        lines,
        Lines(
            {"-" + none + "No such file or directory",
             "cut.json|phone file||unread|phone file: expected JSON, got line 1, column 2: syntax error "
             "while parsing object key - unexpected end of input; expected string literal",
             "missing.json" + none + "No such file or directory",
             "other|pulled folder||unread|there is no EEPROM dump, no camera folder and no getprop "
             "output in it",
             "phone.json|phone file|small|returned|", "pipe" + none + "neither a file nor a folder",
             "pulled/unit7|pulled folder|unit7|returned|",
             "pulled/unit8|pulled folder||unread|pulled folder/vendor/etc/camera/large: expected a file that "
             "can be read, got more than 67108864 bytes",
             "report.json" + none + "the report of a boot",
             "wrong.json|phone file||unread|phone file: /sensors: expected an array, got 7"}));
}

TEST_F(FleetCommand, FolderIsSearched) {
    for (const char* const folder : {"fleet/a.files/root", "fleet/b.files", "fleet/.hidden",
                                     "fleet/pulled/vendor/etc/camera", "fleet/deep/dumped"}) {
        std::filesystem::create_directories(file(folder));
    }
    for (const char* const name :
         {"fleet/a.json", "fleet/a.files/side.json", "fleet/b.files/c.json", "fleet/.hidden/d.json",
          "fleet/pulled/e.json", "fleet/notes.txt", "fleet/deep/dumped/eeprom_raw_data_dump_back_main"}) {
        write(name, "{}");
    }
    std::filesystem::create_symlink(file("phone.json"), file("fleet/link.json"));
    ASSERT_EQ(run("fleet", "fleet.sqlite", "--quiet").out, "");
    zvcam::Database database = zvcam::OpenFleet(file("fleet.sqlite"));
    zvcam::Statement phones(database, "SELECT path FROM phones ORDER BY path");
    Lines paths;
    while (phones.step()) {
        paths.push_back(phones.text(0));
    }
    EXPECT_EQ(paths, Lines({"a.json", "b.files/c.json", "deep/dumped", "pulled"}));
}

}  // namespace
