#include <filesystem>
#include <string>

#include "tests/zvcam/FleetCommand.h"
#include "zvcam/fleet/Database.h"

namespace {

using testing::StartsWith;

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

}  // namespace
