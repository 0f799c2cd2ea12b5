#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace zvcam {

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

}  // namespace zvcam
