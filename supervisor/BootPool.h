#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "supervisor/Boot.h"
#include "supervisor/Booter.h"

namespace supervisor {

/// How a pool works.
struct PoolOptions {
    BootOptions boot;
    std::size_t workers = 0;  ///< processes at work; 0: one for each processor that this one may use
};

/// What became of one job.
struct PoolResult {
    std::uint64_t key = 0;  ///< the caller's
    std::string text;       ///< what the work made of the job
    std::string error;      ///< why there is no text, in one line; empty where there is one
};

/// Many boots, several at a time.
///
/// A job is a text that means something to the caller alone. The caller's work makes another text of it,
/// with as many boots as it wants, in a worker: a fork of this process as it was when the pool was made. What
/// the work needs it captures; what it changes nobody else sees.
///
///     supervisor::BootPool pool({.boot = {.library = library, .describe = false}},
///                               [](const std::string& job, supervisor::Booter& booter) {
///                                   return Summary(booter.boot(virtualphone::ReadPhoneFile(job)));
///                               });
///     for (std::size_t i = 0; i < files.size(); ++i) { pool.add(i, files[i]); }
///     while (const std::optional<supervisor::PoolResult> result = pool.next()) {
///         Keep(files[result->key], result->error.empty() ? result->text : "no boot: " + result->error);
///     }
///
/// A caller that wants whole records back has the work return `record::RecordBytes` and reads the text with
/// `record::ReadRecordBytes`.
///
/// With an `EndOnSignal`, an ending signal stops the pool; the program ends as the signal would have
/// ended it when the pool is destroyed, so what the caller still wants to say of the boots that are done it
/// says before. No other thread should be at work while a pool lives.
class BootPool {
  public:
    /// An exception of the work is the error of that job and of no other.
    using Work = std::function<std::string(const std::string& job, Booter& booter)>;

    /// Starts the workers.
    /// @throws std::system_error, PluginError for a library that is no plug-in.
    BootPool(PoolOptions options, Work work);
    /// Stops, and waits for the workers' end. Their boots end with them.
    ~BootPool();
    BootPool(const BootPool&) = delete;
    BootPool& operator=(const BootPool&) = delete;

    /// Hands a job to the next worker that is free. Never waits. Of a pool that was stopped there is none,
    /// and the job has no result.
    /// @param key comes back with the result; keys may repeat.
    void add(std::uint64_t key, std::string job);

    /// Jobs that were added and whose result `next` has not returned.
    std::size_t pending() const;
    /// Whether a worker may soon have nothing to do unless jobs are added: for a caller that makes its jobs
    /// as they are needed.
    bool wantsJobs() const;

    /// Waits for the end of a job, whichever it is.
    /// @return none when no job is pending, when `timeout` is over, and once the pool is stopped and what was
    /// done before has been returned.
    std::optional<PoolResult> next(std::chrono::milliseconds timeout = std::chrono::milliseconds::max());

    /// Ends the workers and their boots; jobs that are not done have no result. `next` still returns what was
    /// done before.
    void stop();
    /// Whether `stop` was called or an ending signal has arrived.
    bool stopped() const;

  private:
    struct State;
    std::unique_ptr<State> mState;
};

}  // namespace supervisor
