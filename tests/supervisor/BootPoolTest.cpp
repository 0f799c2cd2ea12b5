#include <csignal>
#include <filesystem>
#include <map>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "record/RecordBytes.h"
#include "supervisor/BootPool.h"
#include "supervisor/EndOnSignal.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/TemporaryFolder.h"

// MISBEHAVING is a file name; the build defines it.

namespace {

namespace fs = std::filesystem;
using supervisor::Booter;
using supervisor::BootPool;
using supervisor::PoolOptions;
using supervisor::PoolResult;
using testing::Pair;

PoolOptions Options(std::size_t workers) {
    return {.boot = {.library = MISBEHAVING, .timeout = std::chrono::seconds(2)}, .workers = workers};
}

/// What a boot came to whose plug-in does what the job says.
std::string Work(const std::string& job, Booter& booter) {
    if (job == "kill the worker" || job == "stop the worker") {
        raise(job == "kill the worker" ? SIGKILL : SIGSTOP);
    }
    virtualphone::PhoneDescription phone;
    phone.properties["test.deed"] = job;
    phone.files[job == "lay" ? "/a/b" : "/c"] = {1};
    phone.files["/a"] = {1};
    const auto record = record::ReadRecordBytes(record::RecordBytes(booter.boot(phone)));
    return record::EndText(record.value().ended.value()) + ", " + std::to_string(record->events.size()) +
           " events" + (job == "long" ? std::string(1000000, '.') : "");
}

std::multimap<std::uint64_t, std::string> Results(BootPool& pool) {
    std::multimap<std::uint64_t, std::string> results;
    while (const std::optional<PoolResult> result = pool.next()) {
        results.emplace(result->key, result->text.substr(0, 60) + result->error);
    }
    return results;
}

/// A temporary folder of this test's own: nothing may be left in it.
class Pool : public testing::Test {
  protected:
    Pool() { setenv("TMPDIR", mFolder.path().c_str(), 1); }
    ~Pool() override {
        EXPECT_TRUE(fs::is_empty(mFolder.path()));
        setenv("TMPDIR", mFormer.c_str(), 1);
    }

    const std::string mFormer = fs::temp_directory_path();
    virtualphone::TemporaryFolder mFolder;
};

TEST_F(Pool, EveryJobHasItsOwnEnd) {
    BootPool pool(Options(2), Work);
    const std::vector<std::string> jobs = {"",      "crash", "hang", "throw",           "lay",
                                           "abort", "exit",  "",     "kill the worker", "long"};
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        pool.add(i, jobs[i]);
    }
    EXPECT_THAT(
        Results(pool),
        testing::ElementsAre(Pair(0, "returned, 2 events"), Pair(1, "was ended by SIGSEGV in Deed, 2 events"),
                             Pair(2, "did not return within 2 seconds in Deed, 2 events"),
                             Pair(3, "threw: off the end, 2 events"),
                             Pair(4, "/a: cannot lay the file: a folder of that name is there"),
                             Pair(5, "was ended by SIGABRT in Deed, 2 events"),
                             Pair(6, "exited with status 0 in Deed, 2 events"), Pair(7, "returned, 2 events"),
                             Pair(8, "the worker was ended by SIGKILL"),
                             Pair(9, "returned, 2 events" + std::string(42, '.'))));
    EXPECT_EQ(pool.pending(), 0U);
}

TEST_F(Pool, StoppedItKeepsWhatIsDone) {
    PoolOptions options = Options(1);
    options.boot.timeout = std::chrono::seconds(60);
    for (const char* endless : {"hang", "stop the worker"}) {
        BootPool pool(options, Work);
        pool.add(1, "");
        pool.add(2, endless);
        pool.add(3, "");
        EXPECT_EQ(pool.next().value().key, 1U);
        EXPECT_FALSE(pool.next(std::chrono::milliseconds(20)));
        EXPECT_EQ(pool.pending(), 2U);
        pool.stop();
        EXPECT_FALSE(pool.next());
        pool.add(4, "");
        EXPECT_FALSE(pool.next());
        EXPECT_EQ(pool.pending(), 0U);
    }
}

TEST_F(Pool, WhatAWorkerCannotBeginIsItsJobsError) {
    PoolOptions options = Options(1);
    options.boot.library = mFolder.path() / "plugin.so";
    fs::copy_file(MISBEHAVING, options.boot.library);
    BootPool pool(options, Work);
    fs::remove(options.boot.library);
    pool.add(1, "");
    pool.add(2, "");
    const auto namesIt = testing::HasSubstr("plugin.so: cannot open");
    EXPECT_THAT(Results(pool), testing::ElementsAre(Pair(1, namesIt), Pair(2, namesIt)));
}

/// The caller has its say, then the program ends as the signal would have ended it.
TEST_F(Pool, AnEndingSignalStopsIt) {
    const pid_t program = fork();
    if (program == 0) {
        std::signal(SIGINT, SIG_DFL);
        const supervisor::EndOnSignal endOnSignal;
        PoolOptions options = Options(2);
        options.boot.timeout = std::chrono::seconds(60);
        std::optional<BootPool> pool(std::in_place, options, Work);
        pool->add(1, "");
        pool->add(2, "hang");
        if (pool->next()) {
            kill(getpid(), SIGINT);
            const bool none = !pool->next() && pool->stopped();
            fs::create_directory(fs::temp_directory_path() / (none ? "said" : "wrong"));
        }
        pool.reset();
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(program, &status, 0), program);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
    EXPECT_TRUE(fs::remove(mFolder.path() / "said"));
}

}  // namespace
