#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "analysis/Boot.h"
#include "analysis/Devices.h"
#include "supervisor/Boot.h"
#include "zvcam/files/BootSource.h"

namespace zvcam {

/// Exit statuses of every command.
inline constexpr int kExitSuccess = 0;
/// The boot did not return, what was compared differs, or what was checked is bad.
inline constexpr int kExitBad = 1;
inline constexpr int kExitUnusable =
    2;  ///< usage, an input that cannot be used, an output that cannot be written

/// The boot that a command looks at, and how it comes to be.
struct BootOptions {
    std::string source;  ///< a phone file, a report, or "-" for either on standard input
    std::string root;
    bool cleanRoot = false;
    std::string library;
    std::vector<std::string> properties;  ///< NAME=VALUE
    double timeout = kUsualTimeout;       ///< seconds

    /// Options that say how a phone is booted and were given.
    bool sayHow() const {
        return !root.empty() || cleanRoot || !library.empty() || !properties.empty() ||
               timeout != kUsualTimeout;
    }

    static constexpr double kUsualTimeout = 60;
};

/// Adds the options that `options` holds, and the positional P for its source.
void AddBootOptions(CLI::App& command, BootOptions& options);
/// The positional alone.
void AddSource(CLI::App& command, BootOptions& options);
/// The options alone, for a command whose sources are named by other positionals.
void AddBootOptionsWithoutSource(CLI::App& command, BootOptions& options);
/// Those among them that many boots can share: all but the root folder's.
void AddSharedBootOptions(CLI::App& command, BootOptions& options);

/// Sets the properties that the options name.
void SetProperties(const BootOptions& options, virtualphone::PhoneDescription& phone);

/// How the supervisor is to boot.
/// @param describe whether the record carries the phone.
supervisor::BootOptions SupervisorOptions(const BootOptions& options, bool describe);

/// Boots the phone, or reads the report.
/// @throws std::exception for what cannot be used.
/// @param forReport the record is to be written as a report, with the phone that it came from.
analysis::Boot Obtain(const BootSource& source, const BootOptions& options, bool forReport = false);

/// The same of the source that the options name. A report with options that say how to boot is refused.
analysis::Boot Obtain(const BootOptions& options, bool forReport = false);

/// Refuses options that say how a phone is booted where there is only a report.
/// @throws std::runtime_error
void RefuseBootOptions(const BootSource& source, const BootOptions& options);

/// The phone of the source with the properties that the options set, unbooted.
/// @throws std::exception for what cannot be used, a report that does not say which phone it was among it.
virtualphone::PhoneDescription ChosenPhone(const BootSource& source, const BootOptions& options);

/// Every file that `Obtain` reads: the source, its side files, the plug-in. What cannot be read names none.
std::vector<std::filesystem::path> InputsOf(const BootOptions& options);

/// Says on standard error how the boot ended, unless it returned.
/// @return the exit status of a command that has done its work on it.
int ExitStatusOf(const record::BootRecord& boot);
inline int ExitStatusOf(const analysis::Boot& boot) {
    return ExitStatusOf(boot.record);
}

/// Position of the device update that a person names: "4" for logical device 4, "4/3" for its member with
/// sensor id 3.
/// @throws std::runtime_error for a text that names none.
std::size_t DeviceNamed(const std::string& text, const std::vector<analysis::Device>& devices);

/// Refuses what is no whole number of `least` to `most`. A sign, and what is too much for 64 bits, would pass
/// for another number.
CLI::Validator WholeNumber(std::uint64_t least, std::uint64_t most);

/// Refuses an empty name: what an unset variable of a shell leaves would pass for no option at all.
std::string CheckNotEmpty(const std::string& text);

}  // namespace zvcam
