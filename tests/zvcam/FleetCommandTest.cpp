#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/zvcam/FleetCommand.h"
#include "zvcam/fleet/Database.h"

namespace {

using testing::StartsWith;

TEST_F(FleetCommand, WhatCannotBeUsedIsRefused) {
    write("list", "phone.json\n");
    write("empty", "\n");
    ASSERT_EQ(run("list", "fleet.sqlite").exitCode, 0);
    zvcam::Database(file("foreign"), zvcam::Database::Access::Write).run("CREATE TABLE theirs (number)");
    const std::string foreign = ReadText(file("foreign"));
    std::filesystem::copy_file(file("fleet.sqlite"), file("later"));
    zvcam::Database(file("later"), zvcam::Database::Access::Write).run("PRAGMA user_version = 3");
    const std::vector<std::pair<std::string, std::string>> refused = {
        {"fleet run list --db fleet.sqlite",
         "cannot write fleet.sqlite: it exists; --resume goes on with a database of `zvcam fleet run`"},
        {"fleet run list --db list --resume", "list: expected an SQLite database, got another file"},
        {"fleet run list --db foreign --resume",
         "foreign: expected a database of `zvcam fleet run`, got another one"},
        {"fleet run empty --db new", "empty: expected phone files or folders pulled from devices, got none"},
        {"fleet run phone.json --db new",
         "phone.json: expected a list of phones, one path a line, got JSON; `zvcam run` boots a single "
         "phone"},
        {"fleet run '" PHONES "/halcyrion.json' --db new",
         PHONES "/halcyrion.json: expected a list of phones, one path a line, got JSON; `zvcam run` boots a "
                "single phone"},
        {"fleet run fleet.sqlite --db new",
         "fleet.sqlite: expected a list of phones, one path a line, got bytes that are no text"},
        {"fleet run missing --db new",
         "missing: expected a list of phones or a folder, got No such file or directory"},
        {"fleet run list --db new --shard 3/2",
         "--shard: expected I/N with 1 <= I <= N, such as 1/4, got \"3/2\""},
        {"fleet run list --db new --library '" NO_PLUGIN "'", ""},
        {"fleet report list", "list: expected an SQLite database, got another file"},
        {"fleet report later",
         "later: expected a database of `zvcam fleet run` with user_version 2, got one of "
         "another zvcam with user_version 3"},
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

}  // namespace
