#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zvcam {

/// Prints one line on standard error, printable and of bounded length.
void Complain(std::string_view message);

/// The bytes of a file, or of "-".
/// @param expected what it should be, for the message.
/// @throws std::runtime_error for one that cannot be read.
std::vector<std::uint8_t> ReadFile(const std::string& file, std::string_view expected);

/// Does the work on each of several files, and complains of those that cannot be used.
/// @param isGood does the work on one; throws std::exception for a file that cannot be used.
/// @return the worst exit status.
int ForEachFile(const std::vector<std::string>& files, const std::function<bool(const std::string&)>& isGood);

/// Refuses to replace a file.
/// @throws std::runtime_error when something exists at `path`, unless `force`.
void CheckIsNew(const std::filesystem::path& path, bool force);

/// Refuses outputs that nobody can mean: an input, the same file twice, or, without `force`, a file that
/// exists.
/// @param outputs empty names are passed over.
/// @throws std::runtime_error
void CheckOutputs(const std::vector<std::string>& outputs, const std::vector<std::string>& inputs,
                  bool force);

}  // namespace zvcam
