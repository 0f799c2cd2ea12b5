#pragma once

#include <map>
#include <string>

#include "analysis/Boot.h"

namespace analysis {

/// Every property after a boot, by name: those that the phone started with, and those that were set. An older
/// report, which has no description of its phone, gives the latter alone.
std::map<std::string, std::string> PropertiesAfter(const Boot& boot);

}  // namespace analysis
