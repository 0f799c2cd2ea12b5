#include "supervisor/internal/PhoneProcess.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <mutex>
#include <new>
#include <optional>
#include <pthread.h>
#include <span>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "record/Recorder.h"
#include "record/internal/EventFrames.h"
#include "supervisor/internal/SharedLog.h"
#include "virtualphone/VirtualPhone.h"

namespace supervisor {

namespace {

using record::Ended;

/// What a message of the phone's process is; its first byte.
enum class Message : std::uint8_t {
    Event,      ///< an event's bytes
    Library,    ///< the absolute path of the loaded library
    BuildId,    ///< its build id
    NoPlugin,   ///< why the library cannot be used
    Threw,      ///< what the plug-in threw
    FileCalls,  ///< how many calls of files were made: the structure's own bytes
    Completed,  ///< ran and unloaded: the process is about to leave
};

/// Room that events leave to the other messages, and the longest text of these.
constexpr std::size_t kSpare = std::size_t{64} << 10;
constexpr std::size_t kLongestText = std::size_t{8} << 10;

/// Whether this process is the one that boots the phone, and no fork of it: their events would mix.
std::atomic<bool> gIsPhone = false;

/// The phone's end of the log.
class Reporter final : public record::EventSink {
  public:
    explicit Reporter(SharedLog& log) : mLog(log) {}

    void take(record::Event event) override {
        if (!gIsPhone) {
            return;
        }
        const std::lock_guard lock(mMutex);
        mBytes.assign(1, static_cast<std::uint8_t>(Message::Event));
        record::AppendEvent(mBytes, event);
        mLog.append(mBytes, kSpare);
    }

    void say(Message message, std::string_view text = {}) {
        const std::lock_guard lock(mMutex);
        mBytes.assign(1, static_cast<std::uint8_t>(message));
        text = text.substr(0, kLongestText);
        mBytes.insert(mBytes.end(), text.begin(), text.end());
        mLog.append(mBytes, 0);
    }

  private:
    SharedLog& mLog;
    std::mutex mMutex;
    std::vector<std::uint8_t> mBytes;
};

/// Runs the plug-in and unloads it.
void Run(std::optional<Plugin>& plugin, Reporter& reporter) {
    const record::PluginIdentity identity = plugin->identity();
    reporter.say(Message::Library, identity.path);
    reporter.say(Message::BuildId, identity.buildId);
    if (const std::optional<std::string> exception = plugin->run()) {
        reporter.say(Message::Threw, *exception);
    }
    plugin.reset();
}

/// What the phone's process said beside the events.
struct Told {
    bool completed = false;
    std::optional<std::string> threw;
    std::optional<std::string> noPlugin;
};

Told TakeMessages(const SharedLog& log, record::BootRecord& boot) {
    Told told;
    bool damaged = false;
    // The writer's count is a hint: it may have been overwritten.
    constexpr std::size_t kUsualEvents = 65536;
    boot.events.reserve(std::min(log.count(), kUsualEvents));
    const SharedLog::End end = log.read([&](std::span<const std::uint8_t> message) {
        const auto kind = message.empty() ? Message{0xFF} : static_cast<Message>(message[0]);
        const auto body = message.empty() ? message : message.subspan(1);
        if (kind == Message::Event) {
            if (!record::ReadEvent(body, boot.events.emplace_back())) {
                boot.events.pop_back();
                damaged = true;
            }
            return;
        }
        const std::string text(body.begin(), body.end());
        switch (kind) {
            case Message::Library:
                boot.plugin = {.path = text, .buildId = ""};
                break;
            case Message::BuildId:
                if (boot.plugin) {
                    boot.plugin->buildId = text;
                }
                break;
            case Message::NoPlugin:
                told.noPlugin = text;
                break;
            case Message::Threw:
                told.threw = text;
                break;
            case Message::FileCalls:
                if (body.size() == sizeof(record::FileCalls)) {
                    std::memcpy(&boot.fileCalls.emplace(), body.data(), body.size());
                }
                break;
            case Message::Completed:
                told.completed = true;
                break;
            default:
                damaged = true;
        }
    });
    if (damaged || end.damaged) {
        boot.troubles.emplace_back("the record is damaged: the plug-in has written into it");
    } else if (end.lost > 0) {
        boot.troubles.push_back("the record is full: " + std::to_string(end.lost) + " later events are lost");
    }
    return told;
}

}  // namespace

void BePhone(virtualphone::PhoneDescription description, virtualphone::FailingCalls failing,
             const virtualphone::DeviceFiles& files, const std::filesystem::path& library,
             std::optional<Plugin>& plugin, SharedLog& log) noexcept {
    gIsPhone = true;
    pthread_atfork(nullptr, nullptr, [] { gIsPhone = false; });
    Reporter reporter(log);
    try {
        // Before the library, whose initialisers and finalisers may use it.
        const virtualphone::VirtualPhone phone(std::move(description), files, reporter, std::move(failing));
        if (!plugin) {
            plugin.emplace(library);
        }
        Run(plugin, reporter);
        std::cout.flush();
        std::fflush(nullptr);
        if (const std::optional<record::FileCalls> calls = phone.fileCalls()) {
            reporter.say(Message::FileCalls, {reinterpret_cast<const char*>(&*calls), sizeof *calls});
        }
        reporter.say(Message::Completed);
        // With the phone still on: to take it apart is time lost.
        _exit(0);
    } catch (const std::bad_alloc&) {
        reporter.say(Message::NoPlugin, "there is not enough memory");
        _exit(0);
    } catch (const std::exception& error) {
        reporter.say(Message::NoPlugin, error.what());
        _exit(0);
    }
}

record::BootRecord ReadPhoneLog(const SharedLog& log, int status,
                                std::optional<std::chrono::milliseconds> limitOver) {
    record::BootRecord boot;
    const Told told = TakeMessages(log, boot);
    if (told.noPlugin) {
        throw PluginError(*told.noPlugin);
    }
    Ended& ended = boot.ended.emplace();
    if (limitOver) {
        ended.how = Ended::How::Timeout;
        ended.seconds = std::chrono::duration<double>(*limitOver).count();
    } else if (WIFSIGNALED(status)) {
        ended.how = Ended::How::Signal;
        ended.signal = WTERMSIG(status);
    } else if (!told.completed) {
        ended.how = Ended::How::Exited;
        ended.exitStatus = WEXITSTATUS(status);
    } else if (told.threw) {
        ended.how = Ended::How::Threw;
        ended.what = *told.threw;
    }
    if (!ended.returned()) {
        ended.step = record::LastOperation(boot.events);
    }
    return boot;
}

}  // namespace supervisor
