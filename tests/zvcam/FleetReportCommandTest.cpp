#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>

#include "tests/zvcam/FleetCommand.h"
#include "zvcam/fleet/Database.h"
#include "zvcam/fleet/FleetDatabase.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

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

}  // namespace
