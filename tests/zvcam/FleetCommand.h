#pragma once

#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "analysis/FleetRows.h"
#include "tests/zvcam/Zvcam.h"
#include "zvcam/fleet/Database.h"

inline const std::string kAllTroubles =
    "af=0.05,awb=0.05,lsc=0.05,pdaf=0.05,ois=0.05,erased=0.05,unreadable=0.05,missing=0.05,layout=0.05,"
    "duplicate=0.15,crc=0.05,persist=0.05,stabiliser=0.05,cut=0.05";

/// Makes fleets, boots them and asks their databases.
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

    /// Sends a run a signal as soon as it has written phones into the database. It boots them one at a time,
    /// so that there is time for that.
    /// @return what it said.
    std::string runAndKill(const std::string& source, const std::string& database, int signal) const {
        const std::int64_t before = phonesIn(database);
        const std::string command =
            program() + "fleet run " + source + " --db " + database + " --resume --jobs 1 --quiet 2>error";
        const pid_t pid = fork();
        if (pid == 0) {
            execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
            _exit(127);
        }
        int status = 0;
        bool ended = false;
        while (!ended && phonesIn(database) <= before) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            ended = waitpid(pid, &status, WNOHANG) != 0;
        }
        if (!ended) {
            kill(pid, signal);
            waitpid(pid, &status, 0);
        }
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << "it has ended with " << status;
        return ReadErrors(file("error"));
    }
};
