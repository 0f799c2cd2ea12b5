#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "tests/zvcam/Zvcam.h"
#include "zvcam/fleet/Database.h"

namespace {

/// One that nobody seems to write is read without a look for writers: that one came shows in the end.
TEST_F(Zvcam, WhatIsWrittenWhileItIsReadIsRefused) {
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
