#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "record/Events.h"

namespace record {

/// A file that is not as it was when the phone started.
struct ChangedFile {
    std::string path;   ///< on the phone
    unsigned mode = 0;  ///< permission bits
    std::vector<std::uint8_t> bytes;

    friend bool operator==(const ChangedFile&, const ChangedFile&) = default;
};

/// Permission bits in four octal digits: "0644".
std::string ModeText(unsigned mode);

/// How a boot ended.
struct Ended {
    enum class How { Returned, Threw, Signal, Exited, Timeout };
    How how = How::Returned;
    std::string what;    ///< Threw: what() of the exception
    int signal = 0;      ///< Signal: its number
    int exitStatus = 0;  ///< Exited: its status
    double seconds = 0;  ///< Timeout: the limit
    std::string step;    ///< the operation that logged last; empty where the boot returned or logged nothing

    bool returned() const { return how == How::Returned; }
    friend bool operator==(const Ended&, const Ended&) = default;
};

/// "SIGSEGV" of 11; "signal 34" of one that has no name.
std::string SignalName(int signal);

/// "threw: off the end", "was ended by SIGSEGV in OverriderDualCamCalData", "exited with status 0 ...", "did
/// not return within 60 seconds ..."; "returned".
std::string EndText(const Ended& ended);

/// The build of the plug-in that was booted.
struct PluginIdentity {
    std::string path;
    std::string buildId;  ///< of its ELF notes, lower-case hexadecimal; empty without one

    friend bool operator==(const PluginIdentity&, const PluginIdentity&) = default;
};

/// Calls of the plug-in that concern files and folders of the phone.
struct FileCalls {
    std::uint64_t opened = 0;
    std::uint64_t read = 0;  ///< listings of folders among them
    std::uint64_t written = 0;

    friend bool operator==(const FileCalls&, const FileCalls&) = default;
};

/// Everything that a boot did: what a report holds, written by `WriteReport` and read back by `ReadReport`.
struct BootRecord {
    std::string phone;  ///< its name
    std::optional<PluginIdentity> plugin;
    std::vector<Event> events;
    std::vector<ChangedFile> files;  ///< by ascending path
    /// Files that the run wrote and left as they were before: published all the same. By ascending path.
    std::vector<ChangedFile> rewritten;
    /// Files that lay in a kept root already and that the phone did not lay.
    std::uint64_t foreignFiles = 0;
    /// What could not be found out after the run, a line each: a file that cannot be read, events that were
    /// lost.
    std::vector<std::string> troubles;
    /// None in the record of an older report that does not say.
    std::optional<Ended> ended;
    /// The phone that was booted, as the text of a phone file with its side files inside; empty in an older
    /// report.
    std::string description;
    /// Where a kind of them is a key of the boot's failing calls, be it with no number. No report has them.
    std::optional<FileCalls> fileCalls = {};
    /// Whether the record has the events in one order; an older report has an order within each kind only.
    bool ordered = true;
};

/// The events of one kind, in their order.
template <typename Kind>
std::vector<const Kind*> EventsOf(const std::vector<Event>& events) {
    std::vector<const Kind*> found;
    for (const Event& event : events) {
        if (const Kind* const kind = std::get_if<Kind>(&event)) {
            found.push_back(kind);
        }
    }
    return found;
}
template <typename Kind>
std::vector<const Kind*> EventsOf(const BootRecord& boot) {
    return EventsOf<Kind>(boot.events);
}

/// The file as the run left it; null where it neither changed nor wrote it.
const ChangedFile* FindWritten(const BootRecord& boot, std::string_view path);

/// The operation in whose name the plug-in logged a line: "SetFuseIdProp" of "(123)[SetFuseIdProp] enter".
/// Empty for a line of another form.
std::string_view OperationOf(const LogLine& line);

/// The operation in whose name the plug-in logged last; empty without such a line.
std::string LastOperation(const std::vector<Event>& events);

/// The message of a line of the plug-in without thread id and operation: "enter". The whole message of a line
/// of another form.
std::string_view TextOf(const LogLine& line);

}  // namespace record
