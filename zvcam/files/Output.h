#pragma once

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "supervisor/EndOnSignal.h"

namespace zvcam {

/// The bytes of a file, or of "-".
/// @param expected what it should be, for the message.
/// @throws std::runtime_error for one that cannot be read.
std::vector<std::uint8_t> ReadFile(const std::string& file, std::string_view expected);

using Print = std::function<void(std::ostream&)>;

/// Prints to standard output, and makes sure that all of it arrived.
/// @throws std::runtime_error when it did not.
void PrintOut(const Print& print);

/// Writes a file as a whole or not at all: it takes its place when it is complete. A file that is no regular
/// one, a pipe or a device, is written as it stands. "-" is standard output.
/// @throws std::runtime_error when it cannot be written.
void WriteFile(const std::string& path, const Print& print);
/// The same of bytes.
void WriteFile(const std::string& path, std::span<const std::uint8_t> bytes);

/// A new, empty file that disappears unless it takes the place of another.
class Draft {
  public:
    /// Made beside its target, so that it can take its place in one step.
    /// @param name of the target, for messages.
    /// @throws std::runtime_error when it cannot be made.
    Draft(const std::filesystem::path& target, std::string name);
    ~Draft();
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    const std::string& path() const { return mPath; }

    /// @throws std::runtime_error when it cannot take that place.
    void become(const std::filesystem::path& target, std::filesystem::perms permissions);

  private:
    /// An ending signal waits until the draft is gone or in its place.
    supervisor::EndingWaits mWaits;
    std::string mPath;
    std::string mName;
};

/// The permissions of a new file by the process's mask.
std::filesystem::perms NewFilePermissions();

/// Refuses to write over an input.
/// @param path a file, or a folder that is to be replaced.
/// @param inputs the files that were read; empty names are passed over.
/// @throws std::runtime_error when `path` leads to one of them, or one of them lies there.
void CheckIsNoInput(const std::string& path, const std::vector<std::filesystem::path>& inputs);

/// Refuses to replace a folder, and without `force` a file.
/// @throws std::runtime_error when something exists at `path`.
void CheckMayReplace(const std::filesystem::path& path, bool force);

/// Refuses outputs that nobody can mean: an input, the same file twice, or, without `force`, a file that
/// exists.
/// @param outputs empty names are passed over.
/// @throws std::runtime_error
void CheckOutputs(const std::vector<std::string>& outputs, const std::vector<std::string>& inputs,
                  bool force);

}  // namespace zvcam
