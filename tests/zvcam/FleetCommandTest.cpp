#include <algorithm>
#include <cctype>
#include <chrono>
#include <csignal>
#include <map>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "tests/zvcam/Zvcam.h"
#include "zvcam/fleet/Database.h"
#include "zvcam/fleet/FleetDatabase.h"
#include "zvcam/fleet/Maker.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;
using Lines = std::vector<std::string>;

const std::string kAllTroubles =
    "af=0.05,awb=0.05,lsc=0.05,pdaf=0.05,ois=0.05,erased=0.05,unreadable=0.05,missing=0.05,layout=0.05,"
    "duplicate=0.15,crc=0.05,persist=0.05,stabiliser=0.05,cut=0.05";

class FleetCommand : public Zvcam {
  protected:
    void make(const std::string& name, int count, const std::string& troubles = kAllTroubles) const {
        const Result made = zvcam("fleet make --quiet --count " + std::to_string(count) +
                                  " --seed 7 --trouble " + troubles + " -o " + name);
        ASSERT_EQ(made.exitCode, 0) << made.error;
    }

    Result run(const std::string& source, const std::string& database,
               const std::string& options = "") const {
        return zvcam("fleet run " + source + " --db " + database + " " + options);
    }

    std::string csv(const std::string& database, const std::string& table) const {
        const Result result = zvcam("fleet report " + database + " --csv " + table);
        EXPECT_EQ(result.exitCode, 0) << result.error;
        return result.out;
    }

    /// What a database says of its phones: every table by path, without the time that boots took.
    std::map<std::string, std::string> contentOf(const std::string& database) const {
        std::map<std::string, std::string> content;
        for (const analysis::FleetTable& table : analysis::FleetTables()) {
            content[table.name] = csv(database, table.name);
        }
        std::string& phones = content["phones"];
        std::string withoutTime;
        while (!phones.empty()) {
            const std::string line = phones.substr(0, phones.find('\n'));
            withoutTime += line.substr(0, line.rfind(',')) + "\n";
            phones.erase(0, line.size() + 1);
        }
        phones = withoutTime;
        return content;
    }

    std::int64_t phonesIn(const std::string& database) const {
        if (!std::filesystem::exists(file(database))) {
            return 0;
        }
        try {
            zvcam::Database opened(file(database), zvcam::Database::Access::Read);
            zvcam::Statement count(opened, "SELECT count(*) FROM phones");
            return count.step() ? count.number(0) : 0;
        } catch (const zvcam::DatabaseError&) {
            return 0;  // it has no tables yet
        }
    }

    /// Kills a run as soon as the database has so many phones.
    void runAndKill(const std::string& source, const std::string& database, std::int64_t phones) const {
        const std::string command = "cd '" + file("").string() + "' && { TMPDIR='" + file("tmp").string() +
                                    "' '" ZVCAM "' fleet run " + source + " --db " + database +
                                    " --resume --quiet & echo $! >pid; }";
        ASSERT_EQ(std::system(command.c_str()), 0);
        const int pid = std::stoi(ReadText(file("pid")));
        while (phonesIn(database) < phones) {
            ASSERT_EQ(kill(pid, 0), 0) << "the run has ended";
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        kill(pid, SIGKILL);
    }
};

TEST_F(FleetCommand, ReportCountsWhatWasPutIn) {
    make("made", 400);
    const Result result = run("made", "fleet.sqlite");
    ASSERT_EQ(result.exitCode, 0) << result.error;
    EXPECT_THAT(result.out, AllOf(StartsWith("400 phones in "), HasSubstr(" cannot be read.\n")));
    zvcam::Database database = zvcam::OpenFleet(file("fleet.sqlite"));
    std::istringstream made(ReadText(file("made/made.csv")));
    std::string line;
    std::getline(made, line);
    int troubles = 0;
    while (std::getline(made, line)) {
        const std::size_t count = line.find(',') + 1;
        std::string query = line.substr(line.find(',', count) + 1);
        if (query.starts_with('"')) {
            query = query.substr(1, query.size() - 2);
        }
        zvcam::Statement counted(database, query);
        ASSERT_TRUE(counted.step());
        EXPECT_EQ(counted.number(0), std::stoi(line.substr(count))) << line;
        EXPECT_GT(counted.number(0), 0) << line;
        ++troubles;
    }
    EXPECT_EQ(troubles, 14);
    // Whoever has no trouble has no finding.
    zvcam::Statement sound(database, "SELECT count(*) FROM phones WHERE errors + warnings > 0");
    ASSERT_TRUE(sound.step());
    const std::string troubled = ReadText(file("made/troubled.csv"));
    const auto lines = std::count(troubled.begin(), troubled.end(), '\n');
    zvcam::Statement silent(database,
                            "SELECT (SELECT count(*) FROM repeated_fuse_ids) + count(*) FROM phones "
                            "WHERE ended = 'unread'");
    ASSERT_TRUE(silent.step());
    EXPECT_EQ(sound.number(0) + silent.number(0), lines - 1);
}

TEST_F(FleetCommand, ReportAsTextAndPage) {
    make("made", 12, "lsc=0.1,duplicate=0.6,cut=0.2");
    ASSERT_EQ(run("made", "fleet.sqlite").exitCode, 0);
    const Result report = zvcam("fleet report fleet.sqlite --html fleet.html");
    EXPECT_EQ(report.error, "");
    EXPECT_EQ(report.out,
              "Fleet fleet.sqlite: 12 phones, 1 with errors, 0 more with warnings, 8 with neither, 3 not "
              "booted\n  of " +
                  file("made").string() + R"(
How they ended
  9  returned
  3  unread  phone file: /sensors/#/modes/#/#: expected JSON, got line #, column #: syntax error while parsing array - unexpected end of input; expected ']'
             phones/000/000002.json, phones/000/000007.json, phones/000/000008.json
Findings (phones, # for numbers and ids)
  1  8.3%  error  back main: LSC is broken: bytes # to # sum to #, stored at # is #
                  semco, halcyrion_semco_wide_imx707_eeprom: 1
                  phones/000/000000.json
Modules by maker and layout (bad checksums by range)
  module      chip     maker  layout                              modules  unreadable  erased  foreign layout  AF  AWB  LSC  PDAF  OIS
  back main   imx707   semco  halcyrion_semco_wide_imx707_eeprom  9                                                     1
  front main  imx596   aac    halcyrion_aac_front_imx596_eeprom   9
  back tele   ov50d    sunny  halcyrion_sunny_tele_ov50d_eeprom   9
  back ultra  ov13b10  ofilm  halcyrion_ofilm_uw_ov13b_eeprom     9
Calibration
  stabiliser      persist  9
  wide and tele   persist  9
  wide and ultra  persist  9
Fuse ids that occur more than once: 1
  2  back tele  EEAF3C26236A764CEE3EF9BB00000005  phones/000/000005.json, phones/000/000006.json
Error lines (those that every phone has left out)
  phones  lines  operation                     text
  1       1      MetadataUpdateCheckSumResult  submodule(LSC) checksum fail !
)");
    const std::string page = ReadText(file("fleet.html"));
    for (const char* const text :
         {"1 with errors", "phones/000/000007.json", "LSC is broken: bytes # to # sum to #",
          "halcyrion_semco_wide_imx707_eeprom"}) {
        EXPECT_THAT(page, HasSubstr(text));
    }
}

TEST_F(FleetCommand, MadeFleetIsTheSameEverywhere) {
    make("made", 30, "lsc=0.1,duplicate=0.2");
    // The numbers of the generator, and no other library's.
    EXPECT_EQ(ReadText(file("made/troubled.csv")),
              "path,trouble,place\n"
              "phones/000/000000.json,lsc,back main\n"
              "phones/000/000010.json,duplicate,back ultra\n"
              "phones/000/000013.json,duplicate,back tele\n"
              "phones/000/000016.json,lsc,back ultra\n"
              "phones/000/000021.json,duplicate,back ultra\n"
              "phones/000/000024.json,duplicate,back ultra\n"
              "phones/000/000026.json,duplicate,back ultra\n"
              "phones/000/000029.json,duplicate,back ultra\n");
    EXPECT_THAT(
        ReadText(file("made/phones/000/000029.json")),
        AllOf(HasSubstr(R"("16":"3F9BE01E4A5261250000001D")"), HasSubstr(R"("16":"154091792A76000000001D")"),
              HasSubstr(R"("16":"6175C3FEFA737355CB9FCFB80000001D")"),
              // The ultra's is that of the phone before.
              HasSubstr(R"("16":"87793527E3F58C9B890420850000001C")")));
}

/// Whatever ends it, there is no half a fleet in the way of the next one.
TEST_F(FleetCommand, InterruptedMakeLeavesNothing) {
    const std::string make = "cd '" + file("").string() + "' && { '" ZVCAM "' fleet make --count 100000 -o ";
    for (const char* const folder : {"new", "empty"}) {
        std::filesystem::create_directory(file("empty"));
        const std::string wait = " & for i in $(seq 2000); do test -s " + std::string(folder) +
                                 "/phones/000/000100.json && break; sleep 0.01; done";
        EXPECT_EQ(WEXITSTATUS(std::system(
                      (make + folder + wait + "; kill -TERM $!; wait $!; } 2>interrupted").c_str())),
                  128 + SIGTERM);
        EXPECT_THAT(ReadText(file("interrupted")), HasSubstr("zvcam: interrupted; nothing of "));
        EXPECT_FALSE(std::filesystem::exists(file("new")));
        EXPECT_TRUE(std::filesystem::is_empty(file("empty")));
    }
}

TEST_F(FleetCommand, KilledRunGoesOnWhereItWas) {
    make("made", 700);
    runAndKill("made", "killed.sqlite", 1);
    runAndKill("made", "killed.sqlite", 250);
    runAndKill("made", "killed.sqlite", 450);
    const std::int64_t before = phonesIn("killed.sqlite");
    EXPECT_GE(before, 450);
    EXPECT_LT(before, 700);
    const Result resumed = run("made", "killed.sqlite", "--resume");
    ASSERT_EQ(resumed.exitCode, 0) << resumed.error;
    EXPECT_THAT(resumed.out, HasSubstr("; " + std::to_string(before) + " were done before"));
    ASSERT_EQ(run("made", "whole.sqlite").exitCode, 0);
    EXPECT_EQ(contentOf("killed.sqlite"), contentOf("whole.sqlite"));
}

TEST_F(FleetCommand, DatabaseHasOneRunAtATime) {
    write("list", "phone.json\n");
    {
        zvcam::FleetWriter writer(file("fleet.sqlite"), /*resume=*/false,
                                  {.source = file("list").string(), .shard = "", .plugin = {}});
        const Result second = run("list", "fleet.sqlite", "--resume");
        EXPECT_EQ(second.exitCode, 2);
        EXPECT_EQ(second.error, "zvcam: fleet.sqlite: another run is writing it\n");
    }
    EXPECT_EQ(run("list", "fleet.sqlite", "--resume").exitCode, 0);
    EXPECT_EQ(phonesIn("fleet.sqlite"), 1);
}

TEST_F(FleetCommand, ShardsMakeTheWhole) {
    make("made", 41);
    ASSERT_EQ(run("made/phones.txt", "whole.sqlite").exitCode, 0);
    ASSERT_EQ(run("made/phones.txt", "1.sqlite", "--shard 1/2").exitCode, 0);
    ASSERT_EQ(run("made/phones.txt", "2.sqlite", "--shard 2/2").exitCode, 0);
    EXPECT_EQ(phonesIn("1.sqlite"), 21);
    EXPECT_EQ(phonesIn("2.sqlite"), 20);
    const Result merged = zvcam("fleet merge merged.sqlite 2.sqlite 1.sqlite");
    EXPECT_EQ(merged.out, "merged.sqlite: 41 phones of 2 databases\n");
    EXPECT_EQ(contentOf("merged.sqlite"), contentOf("whole.sqlite"));
    // What is in two databases is in doubt, and nothing is written then.
    const Result twice = zvcam("fleet merge twice.sqlite 1.sqlite whole.sqlite");
    EXPECT_EQ(twice.exitCode, 2);
    EXPECT_THAT(twice.error, StartsWith("zvcam: whole.sqlite: an earlier database has the phone phones/"));
    EXPECT_FALSE(std::filesystem::exists(file("twice.sqlite")));
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

TEST_F(FleetCommand, ResumeKeepsToItsSourceAndPlugin) {
    make("made", 2, "lsc=1");
    make("other", 3, "lsc=1");
    ASSERT_EQ(run("made", "fleet.sqlite").exitCode, 0);
    const std::string before = ReadText(file("fleet.sqlite"));
    const Result source = run("other", "fleet.sqlite", "--resume");
    EXPECT_EQ(source.exitCode, 2);
    EXPECT_EQ(source.error, "zvcam: fleet.sqlite: cannot go on with phones of " + file("other").string() +
                                ": it holds phones of " + file("made").string() + "\n");
    const Result plugin = run("made", "fleet.sqlite", "--resume --library '" FAKE_PLUGIN "'");
    EXPECT_EQ(plugin.exitCode, 2);
    EXPECT_THAT(plugin.error,
                testing::MatchesRegex("zvcam: fleet.sqlite: cannot go on with a plug-in of build id "
                                      "[0-9a-f]+: it holds phones of build id [0-9a-f]+\n"));
    EXPECT_EQ(ReadText(file("fleet.sqlite")), before);
    EXPECT_EQ(run("./made/", "fleet.sqlite", "--resume --shard 1/2").exitCode, 0);
}

TEST_F(FleetCommand, MergeNamesTheInputThatLacksATable) {
    write("list", "phone.json\n");
    ASSERT_EQ(run("list", "odd?name#50%41.sqlite").exitCode, 0);
    ASSERT_EQ(run("list", "bad.sqlite").exitCode, 0);
    zvcam::Database(file("bad.sqlite"), zvcam::Database::Access::Write).run("DROP TABLE pairs");
    EXPECT_EQ(zvcam("fleet merge whole.sqlite odd?name#50%41.sqlite").out,
              "whole.sqlite: 1 phone of 1 database\n");
    const Result merged = zvcam("fleet merge new.sqlite odd?name#50%41.sqlite bad.sqlite");
    EXPECT_EQ(merged.exitCode, 2);
    EXPECT_EQ(merged.error, "zvcam: bad.sqlite: no such table: pairs\n");
    EXPECT_FALSE(std::filesystem::exists(file("new.sqlite")));
}

TEST_F(FleetCommand, EntriesThatCannotBeReadAreRows) {
    write("cut.json", "{");
    write("wrong.json", R"({"sensors": 7})");
    write("report.json", zvcam("run phone.json --json -").out);
    std::filesystem::create_directories(file("pulled/unit7"));
    write("pulled/unit7/getprop.txt", "[ro.serialno]: [7]\n");
    std::filesystem::create_directories(file("pulled/unit8/vendor/etc/camera"));
    write("pulled/unit8/vendor/etc/camera/large", "");
    std::filesystem::resize_file(file("pulled/unit8/vendor/etc/camera/large"), std::uintmax_t{1} << 40);
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

TEST(FleetPage, HasEveryTableAndTrouble) {
    const std::string page = ReadText(SOURCE "/docs/fleet.md");
    for (const analysis::FleetTable& table : analysis::FleetTables()) {
        std::string meaning = table.meaning;
        meaning[0] = static_cast<char>(std::toupper(meaning[0]));
        std::string section =
            "### " + std::string(table.name) + "\n\n" + meaning + ".\n\n| column | meaning |\n|---|---|\n";
        for (const analysis::FleetColumn& column : table.columns) {
            section += "| `" + std::string(column.name) + "` | " + column.meaning + " |\n";
        }
        EXPECT_THAT(page, HasSubstr(section + "\n"));
    }
    for (const std::string& name : zvcam::FleetTableNames()) {
        EXPECT_TRUE(page.find("### " + name) != std::string::npos ||
                    page.find("| `" + name + "` |") != std::string::npos)
            << name;
    }
    std::string troubles = "| trouble | what it is |\n|---|---|\n";
    for (const zvcam::Trouble& trouble : zvcam::Troubles()) {
        troubles += "| `" + std::string(trouble.name) + "` | " + trouble.meaning + " |\n";
    }
    EXPECT_THAT(page, HasSubstr(troubles));
}

TEST_F(FleetCommand, EachQueryOfThePageHasAnAnswer) {
    make("made", 200);
    write("list", ReadText(file("made/phones.txt")) + PHONES "/fieldtrouble.json\n");
    std::filesystem::rename(file("list"), file("made/list"));
    ASSERT_EQ(run("made/list", "fleet.sqlite").exitCode, 0);
    zvcam::Database database = zvcam::OpenFleet(file("fleet.sqlite"));
    const std::string page = ReadText(SOURCE "/docs/fleet.md");
    const std::string fence = "```sql\n";
    int queries = 0;
    for (std::size_t at = page.find(fence); at != std::string::npos; at = page.find(fence, at + 1)) {
        const std::size_t start = at + fence.size();
        const std::string query = page.substr(start, page.find("```", start) - start);
        EXPECT_TRUE(zvcam::Statement(database, query).step()) << query;
        ++queries;
    }
    EXPECT_EQ(queries, 10);
}

TEST_F(FleetCommand, WhatCannotBeUsedIsRefused) {
    write("list", "phone.json\n");
    write("empty", "\n");
    ASSERT_EQ(run("list", "fleet.sqlite").exitCode, 0);
    zvcam::Database(file("foreign"), zvcam::Database::Access::Write).run("CREATE TABLE theirs (number)");
    const std::string foreign = ReadText(file("foreign"));
    std::filesystem::copy_file(file("fleet.sqlite"), file("later"));
    zvcam::Database(file("later"), zvcam::Database::Access::Write).run("PRAGMA user_version = 2");
    const std::vector<std::pair<std::string, std::string>> refused = {
        {"fleet run list --db fleet.sqlite",
         "cannot write fleet.sqlite: it exists; --resume goes on with it"},
        {"fleet run list --db list --resume", "list: file is not a database"},
        {"fleet run list --db foreign --resume",
         "foreign: expected a database of `zvcam fleet run`, got another one"},
        {"fleet run empty --db new", "empty: expected phone files or folders pulled from devices, got none"},
        {"fleet run phone.json --db new",
         "phone.json: expected a list of phones, one path a line, got JSON; `zvcam run` boots a single "
         "phone"},
        {"fleet run missing --db new",
         "missing: expected a list of phones or a folder, got No such file or directory"},
        {"fleet run list --db new --shard 3/2", "expected a shard such as 1/4, got \"3/2\""},
        {"fleet run list --db new --library '" NO_PLUGIN "'", ""},
        {"fleet report list", "list: file is not a database"},
        {"fleet report later",
         "later: expected a database of `zvcam fleet run` with user_version 1, got one of "
         "another zvcam with user_version 2"},
        {"fleet report fleet.sqlite --csv nothing",
         "no table is called \"nothing\"; there are phones, modules, pairs, refusals, stabiliser, "
         "properties, "
         "findings, error_lines, runs, common_findings, findings_by_module, module_kinds, repeated_fuse_ids, "
         "common_error_lines"},
        {"fleet merge fleet.sqlite fleet.sqlite", "cannot write fleet.sqlite: it exists"},
        {"fleet make --count 1 -o tmp/..", "cannot write tmp/..: it exists and is not empty"},
        {"fleet make --count 1 --trouble lsc=2 -o new",
         "expected a rate of 0 to 1 such as lsc=0.01, got \"lsc=2\""},
        {"fleet make --count 1 --trouble lsc=0.1,lsc=0.1 -o new", "the trouble lsc stands there twice"},
        {"fleet make --count 1 --trouble lsc=0.6,af=0.6 -o new",
         "a phone has one trouble at most, but the rates sum to more than 1"},
        {"fleet make --count 1 --like phone.json --trouble lsc=1 -o new",
         "no phone like \"small\" can have the trouble lsc: the lens shading checksum of a module is bad"},
    };
    for (const auto& [command, message] : refused) {
        const Result result = zvcam(command);
        EXPECT_EQ(result.exitCode, 2) << command;
        EXPECT_THAT(result.error, StartsWith("zvcam: " + message)) << command;
        EXPECT_FALSE(std::filesystem::exists(file("new"))) << command;
    }
    EXPECT_EQ(ReadText(file("foreign")), foreign);
    for (const auto& [number, range] : std::map<std::string, std::string>{
             {"fleet make -o new --count 1 --seed -1", "0 to 18446744073709551615"},
             {"fleet make -o new --count 1 --seed 18446744073709551616", "0 to 18446744073709551615"},
             {"fleet make -o new --count -18446744073709551615", "1 to 10000000"},
             {"fleet make -o new --count 1000000000", "1 to 10000000"},
             {"fleet run list --db new --jobs 0", "1 to 4096"}}) {
        const Result result = zvcam(number);
        EXPECT_EQ(result.exitCode, 2) << number;
        const std::size_t value = number.rfind(' ');
        const std::size_t option = number.rfind(' ', value - 1) + 1;
        EXPECT_THAT(result.error, StartsWith("zvcam: " + number.substr(option, value - option) +
                                             ": expected a whole number of " + range + ", got \"" +
                                             number.substr(value + 1) + "\"; "));
        EXPECT_FALSE(std::filesystem::exists(file("new"))) << number;
    }
}

/// One in WAL mode whose writer is gone is read as it lies, and nothing is made beside it.
TEST_F(FleetCommand, ReportLeavesNothingBesideTheDatabase) {
    write("list", "phone.json\n");
    ASSERT_EQ(run("list", "fleet.sqlite").exitCode, 0);
    const std::string report = zvcam("fleet report fleet.sqlite").out;
    zvcam::Database(file("fleet.sqlite"), zvcam::Database::Access::Write).run("PRAGMA journal_mode = WAL");
    EXPECT_EQ(zvcam("fleet report fleet.sqlite").out, report);
    EXPECT_EQ(zvcam("fleet merge merged.sqlite fleet.sqlite").exitCode, 0);
    for (const char* const beside : {"fleet.sqlite-wal", "fleet.sqlite-shm"}) {
        EXPECT_FALSE(std::filesystem::exists(file(beside))) << beside;
    }
}

/// One that nobody seems to write is read without a look for writers: that one came shows in the end.
TEST_F(FleetCommand, WhatIsWrittenWhileItIsReadIsRefused) {
    using zvcam::Database;
    Database(file("a"), Database::Access::Write).run("PRAGMA journal_mode = WAL; CREATE TABLE t (n)");
    ASSERT_FALSE(std::filesystem::exists(file("a-wal")));
    const auto errorOf = [this](const std::string& written) -> std::string {
        const Database read(file("a"), Database::Access::Read, "the database");
        {
            Database writer(file("a"), Database::Access::Write);
            writer.run(written);
            // A clock of file times that stands still would hide it.
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        try {
            read.checkUnwritten();
        } catch (const zvcam::DatabaseError& error) {
            return error.what();
        }
        return "";
    };
    EXPECT_EQ(errorOf("SELECT n FROM t"), "");
    EXPECT_EQ(errorOf("INSERT INTO t VALUES (1)"),
              "the database: was written meanwhile; what was read of it may not fit together");
}

}  // namespace
