#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/Boot.h"
#include "virtualphone/PhoneDescription.h"

namespace zvcam {

/// What a boot comes from, once it is read: a phone file, which is to be booted, or the report of a boot.
struct BootSource {
    std::string text;
    std::string name;              ///< for messages
    std::filesystem::path folder;  ///< of a phone file, where its side files lie
    bool isReport = false;
};

/// Whether a text is a report: its first key is one that no phone file has.
bool IsReport(std::string_view text);

/// @param source a path, or "-" for standard input.
/// @throws std::runtime_error for what cannot be read.
BootSource ReadBootSource(const std::string& source);

/// The boot that a report tells of.
/// @throws std::exception for a text that is none.
analysis::Boot ReportedBoot(const BootSource& report);

/// The phone that a phone file describes, or that a report is about.
/// @throws std::exception for a text that is neither, and for a report that does not say which phone it was.
virtualphone::PhoneDescription PhoneOf(const BootSource& source);

/// The source, and every side file that a phone file names, as far as it can be read. Standard input names
/// none.
std::vector<std::filesystem::path> FilesOf(const std::string& source);

}  // namespace zvcam
