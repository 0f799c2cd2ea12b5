#pragma once

#include <memory>

#include "supervisor/Boot.h"

namespace supervisor {

/// Boots phones one after the other with the same options, each in a child of its own, at a fraction of what
/// `Boot` costs: the plug-in is loaded once, by a process whose forks the phones are, and the phones' files
/// lie in one folder.
///
/// Where loading the plug-in does anything that shows (it uses the platform, starts a thread, crashes, exits
/// or takes longer than a boot may), each phone loads it for itself, as `Boot` has it. What it prints when it
/// is loaded appears once.
class Booter {
  public:
    /// Loads the plug-in.
    /// @param options its `root`, where it has one, is a folder that is emptied before each boot.
    /// @throws PluginError for a library that is no plug-in; std::system_error
    explicit Booter(BootOptions options);
    ~Booter();
    Booter(const Booter&) = delete;
    Booter& operator=(const Booter&) = delete;

    /// As `supervisor::Boot`.
    /// @throws virtualphone::PhoneFileError; std::system_error, also when an ending signal has arrived, for
    /// which the program ends when the booter is destroyed.
    /// @param failing calls that fail in this boot, beside those of the options.
    record::BootRecord boot(const virtualphone::PhoneDescription& phone,
                            const virtualphone::FailingCalls& failing = {});

  private:
    struct State;
    std::unique_ptr<State> mState;
};

}  // namespace supervisor
