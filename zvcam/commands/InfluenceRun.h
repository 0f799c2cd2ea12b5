#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

#include "analysis/Influence.h"
#include "supervisor/Boot.h"

namespace zvcam {

/// How influence is looked for.
struct InfluenceRunOptions {
    supervisor::BootOptions boot;  ///< of each boot; without a root
    std::string module;            ///< "back main" or "back_main": this module alone; empty: all inputs
    std::size_t step = 16;         ///< bytes, at least 1
};

/// Boots a phone over and over with something changed each time, on all processors.
///
/// An ending signal ends the search early; the program then ends with this object, so what is known is to be
/// printed while it lives.
class InfluenceRun {
  public:
    /// @throws std::runtime_error for a module that the phone does not have, and what a boot throws.
    InfluenceRun(virtualphone::PhoneDescription phone, const InfluenceRunOptions& options);
    ~InfluenceRun();
    InfluenceRun(const InfluenceRun&) = delete;
    InfluenceRun& operator=(const InfluenceRun&) = delete;

    /// The boot of the unchanged phone.
    const record::BootRecord& unchanged() const;

    /// Once only. Shows its progress on standard error.
    /// @throws std::runtime_error when a boot cannot be made.
    analysis::Influence find();

  private:
    struct State;
    std::unique_ptr<State> mState;
};

}  // namespace zvcam
