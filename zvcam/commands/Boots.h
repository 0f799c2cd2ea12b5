#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "analysis/Boot.h"
#include "supervisor/Boot.h"
#include "virtualphone/PhoneDescription.h"
#include "zvcam/commands/BootOptions.h"
#include "zvcam/files/BootSource.h"

namespace zvcam {

/// The properties that the options set.
std::map<std::string, std::string> PropertiesOf(const BootOptions& options);

/// Sets them.
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

}  // namespace zvcam
