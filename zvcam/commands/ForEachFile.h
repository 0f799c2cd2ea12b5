#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zvcam {

/// Does the work on each of several files, and complains of those that cannot be used.
/// @param isGood does the work on one; throws std::runtime_error for a file that cannot be used.
/// @return the worst exit status.
int ForEachFile(const std::vector<std::string>& files, const std::function<bool(const std::string&)>& isGood);

}  // namespace zvcam
