#pragma once

#include <filesystem>

#include "record/BootRecord.h"
#include "virtualphone/PhoneDescription.h"

namespace supervisor {

/// How a phone is booted.
struct BootOptions {
    std::filesystem::path library;  ///< the build of the plug-in
    std::filesystem::path root;     ///< keeps the phone's files; empty: a temporary folder does
};

/// Switches a phone on, and off again once the plug-in has run.
/// @throws virtualphone::PhoneFileError, PluginError, std::filesystem::filesystem_error
record::BootRecord Boot(const virtualphone::PhoneDescription& phone, const BootOptions& options);

}  // namespace supervisor
