#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "virtualphone/PhoneDescription.h"
#include "virtualphone/Record.h"

namespace supervisor {

/// What a phone published when it started.
struct BootOutcome {
    std::string phone;  ///< its name
    virtualphone::Record record;
    std::vector<virtualphone::ChangedFile> files;
    std::optional<std::string> exception;  ///< what ended the run early
};

/// Switches a phone on, and off again once the plug-in has run.
/// @param root keeps the phone's files; empty: a temporary folder does.
/// @throws virtualphone::PhoneFileError, PluginError, std::filesystem::filesystem_error
BootOutcome Boot(virtualphone::PhoneDescription phone, const std::filesystem::path& root,
                 const std::filesystem::path& library);

}  // namespace supervisor
