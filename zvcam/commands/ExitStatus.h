#pragma once

namespace zvcam {

/// Exit statuses of every command.
inline constexpr int kExitSuccess = 0;
/// The boot did not return, what was compared differs, or what was checked is bad.
inline constexpr int kExitBad = 1;
inline constexpr int kExitUnusable =
    2;  ///< usage, an input that cannot be used, an output that cannot be written

}  // namespace zvcam
