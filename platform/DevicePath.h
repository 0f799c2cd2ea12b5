#pragma once

#include <string>

#include "platform/Api.h"

/// Where a path of the phone lies on the machine that runs this process.
///
/// On a phone this is the identity. The virtual phone puts its root folder in front of the path while it
/// has one, and is the identity otherwise. Only what is opened goes through here: log lines, properties and
/// metadata carry the phone's own path.
///
/// @param path an absolute path of the phone, never null.
PLATFORM_API std::string DevicePath(const char* path);
