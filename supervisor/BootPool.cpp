#include "supervisor/BootPool.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <deque>
#include <exception>
#include <new>
#include <poll.h>
#include <sched.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "supervisor/EndOnSignal.h"
#include "supervisor/internal/Process.h"
#include "virtualphone/TemporaryFolder.h"

namespace supervisor {

namespace {

/// What crosses between the pool and a worker, its text behind it.
struct Frame {
    std::uint64_t key = 0;
    std::uint64_t size = 0;
    bool failed = false;  ///< the text is that of an error
};

/// Jobs that a worker holds: the one at hand, and one that keeps it busy until it gets the next.
constexpr std::size_t kJobsInHand = 2;

void AppendFrame(std::string& bytes, const Frame& frame, std::string_view text) {
    bytes.append(reinterpret_cast<const char*>(&frame), sizeof frame);
    bytes.append(text);
}

/// Whether `bytes` begin with a whole frame.
bool ReadFrame(std::string_view bytes, Frame& frame, std::string_view& text) {
    if (bytes.size() < sizeof frame) {
        return false;
    }
    std::memcpy(&frame, bytes.data(), sizeof frame);
    text = bytes.substr(sizeof frame);
    if (text.size() < frame.size) {
        return false;
    }
    text = text.substr(0, frame.size);
    return true;
}

/// Appends what has arrived.
/// @return false at the end.
bool Receive(int socket, std::string& bytes, int flags) {
    constexpr std::size_t kAtOnce = std::size_t{64} << 10;
    const std::size_t size = bytes.size();
    bytes.resize(size + kAtOnce);
    ssize_t count = 0;
    do {
        count = recv(socket, bytes.data() + size, kAtOnce, flags);
    } while (count < 0 && errno == EINTR);
    bytes.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK));
}

/// Sends and removes what the other side takes.
/// @return false when it takes nothing any more.
bool Send(int socket, std::string& bytes, int flags) {
    while (!bytes.empty()) {
        const ssize_t count = send(socket, bytes.data(), bytes.size(), flags | MSG_NOSIGNAL);
        if (count >= 0) {
            bytes.erase(0, static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return errno == EAGAIN || errno == EWOULDBLOCK;
        }
    }
    return true;
}

/// All that a worker does: jobs, until the pool has none left. Nothing leaves it but the end of the process:
/// what stands behind the fork is the program's.
void Serve(int socket, const BootOptions& options, const BootPool::Work& work) noexcept {
    // Made for the first job, whose error it is where it cannot be made.
    std::optional<Booter> booter;
    std::string received;
    do {
        std::size_t used = 0;
        std::string answers;
        Frame job;
        std::string_view text;
        while (ReadFrame(std::string_view(received).substr(used), job, text)) {
            used += sizeof job + text.size();
            std::string answer;
            bool failed = true;
            try {
                if (!booter) {
                    booter.emplace(options);
                }
                answer = work(std::string(text), *booter);
                failed = false;
            } catch (const std::bad_alloc&) {
                answer = "there is not enough memory";
            } catch (const std::exception& error) {
                answer = error.what();
            }
            AppendFrame(answers, {.key = job.key, .size = answer.size(), .failed = failed}, answer);
            if (!Send(socket, answers, 0)) {
                return;
            }
        }
        received.erase(0, used);
    } while (Receive(socket, received, 0));
}

class Worker {
  public:
    Worker(BootOptions options, const BootPool::Work& work) {
        // Here, so that it goes when the worker is gone, however it went.
        options.root = mFolder.path();
        std::array<int, 2> sockets;
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()) != 0) {
            throw Failure("cannot make a socket");
        }
        mSocket.emplace(sockets[0], "");
        const File others(sockets[1], "");
        mChild = Child(Fork());
        if (mChild.id() == 0) {
            mSocket.reset();
            EndOnSignal::forget();
            {
                const EndOnSignal endOnSignal;
                Serve(others.get(), options, work);
            }
            _exit(0);
        }
    }

    int socket() const { return mSocket->get(); }
    bool takesJobs() const { return mJobs.size() < kJobsInHand; }
    bool hasToSend() const { return !mToSend.empty(); }
    std::deque<std::pair<std::uint64_t, std::string>>& jobs() { return mJobs; }

    void give(std::pair<std::uint64_t, std::string> job) {
        AppendFrame(mToSend, {.key = job.first, .size = job.second.size()}, job.second);
        mJobs.push_back(std::move(job));
    }

    /// Sends and receives what can be without waiting.
    /// @return false when the worker is gone.
    bool exchange(std::deque<PoolResult>& results) {
        // Where it takes nothing any more, its end shows below.
        Send(mSocket->get(), mToSend, MSG_DONTWAIT);
        const bool there = Receive(mSocket->get(), mReceived, MSG_DONTWAIT);
        std::size_t used = 0;
        Frame frame;
        std::string_view text;
        while (ReadFrame(std::string_view(mReceived).substr(used), frame, text)) {
            used += sizeof frame + text.size();
            PoolResult& result = results.emplace_back(PoolResult{.key = frame.key, .text = "", .error = ""});
            (frame.failed ? result.error : result.text) = text;
            mJobs.pop_front();
        }
        mReceived.erase(0, used);
        return there;
    }

    void askToEnd() const { mChild.askToEnd(); }
    int wait() { return mChild.wait(); }

  private:
    virtualphone::TemporaryFolder mFolder;
    std::optional<File> mSocket;
    Child mChild;
    std::deque<std::pair<std::uint64_t, std::string>> mJobs;  ///< in hand, in order
    std::string mToSend;
    std::string mReceived;
};

std::size_t Processors() {
    cpu_set_t set;
    return sched_getaffinity(0, sizeof set, &set) == 0 ? static_cast<std::size_t>(CPU_COUNT(&set)) : 1;
}

}  // namespace

struct BootPool::State {
    State(PoolOptions poolOptions, Work poolWork)
        : options(std::move(poolOptions)), work(std::move(poolWork)) {
        // What is wrong with the library is said before there is a worker.
        static_cast<void>(Booter(options.boot));
        workers.resize(options.workers == 0 ? Processors() : options.workers);
        for (auto& worker : workers) {
            worker = std::make_unique<Worker>(options.boot, work);
        }
    }

    /// Hands out jobs, waits until a worker or a signal does something, and collects.
    void turn(int milliseconds) {
        std::vector<pollfd> polls;
        for (const auto& worker : workers) {
            while (!waiting.empty() && worker->takesJobs()) {
                worker->give(std::move(waiting.front()));
                waiting.pop_front();
            }
            polls.push_back({.fd = worker->socket(),
                             .events = static_cast<short>(worker->hasToSend() ? POLLIN | POLLOUT : POLLIN),
                             .revents = 0});
        }
        polls.push_back({.fd = EndingWaits::pollFd(), .events = POLLIN, .revents = 0});
        poll(polls.data(), polls.size(), milliseconds);
        for (std::size_t i = 0; i < workers.size(); ++i) {
            if (polls[i].revents != 0 && !workers[i]->exchange(results) && !over()) {
                replace(workers[i]);
            }
        }
    }

    /// A worker has gone: what it was at is lost, what it had not begun is not.
    void replace(std::unique_ptr<Worker>& worker) {
        const int status = worker->wait();
        auto jobs = std::move(worker->jobs());
        if (!jobs.empty()) {
            results.push_back({.key = jobs.front().first,
                               .text = "",
                               .error = "the worker " +
                                        (WIFSIGNALED(status)
                                             ? "was ended by " + record::SignalName(WTERMSIG(status))
                                             : "exited with status " + std::to_string(WEXITSTATUS(status)))});
            jobs.pop_front();
        }
        waiting.insert(waiting.begin(), std::make_move_iterator(jobs.begin()),
                       std::make_move_iterator(jobs.end()));
        worker = std::make_unique<Worker>(options.boot, work);
    }

    void stop() {
        ended = true;
        for (const auto& worker : workers) {
            worker->askToEnd();
        }
        for (const auto& worker : workers) {
            worker->wait();
            while (worker->exchange(results)) {
            }
        }
        workers.clear();
        pending = results.size();
    }

    bool over() const { return ended || EndingWaits::arrived(); }

    EndingWaits endingWaits;  ///< first to come and last to go
    PoolOptions options;
    Work work;
    std::vector<std::unique_ptr<Worker>> workers;
    std::deque<std::pair<std::uint64_t, std::string>> waiting;
    std::deque<PoolResult> results;
    std::size_t pending = 0;
    bool ended = false;
};

BootPool::BootPool(PoolOptions options, Work work)
    : mState(std::make_unique<State>(std::move(options), std::move(work))) {}

BootPool::~BootPool() {
    stop();
}

void BootPool::add(std::uint64_t key, std::string job) {
    if (mState->ended) {
        return;
    }
    mState->waiting.emplace_back(key, std::move(job));
    ++mState->pending;
}

std::size_t BootPool::pending() const {
    return mState->pending;
}

bool BootPool::wantsJobs() const {
    return mState->waiting.size() < mState->workers.size() * kJobsInHand;
}

std::optional<PoolResult> BootPool::next(std::chrono::milliseconds timeout) {
    using Clock = std::chrono::steady_clock;
    const bool forEver = timeout == std::chrono::milliseconds::max();
    const Clock::time_point end = forEver ? Clock::time_point::max() : Clock::now() + timeout;
    while (mState->results.empty() && mState->pending > 0) {
        if (mState->over() && !mState->ended) {
            mState->stop();
            continue;
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        if (left.count() <= 0) {
            return std::nullopt;
        }
        mState->turn(forEver ? -1 : static_cast<int>(std::min<std::int64_t>(left.count(), 1 << 30)));
    }
    if (mState->results.empty()) {
        return std::nullopt;
    }
    std::optional<PoolResult> result = std::move(mState->results.front());
    mState->results.pop_front();
    --mState->pending;
    return result;
}

void BootPool::stop() {
    if (!mState->ended) {
        mState->stop();
    }
}

bool BootPool::stopped() const {
    return mState->over();
}

}  // namespace supervisor
