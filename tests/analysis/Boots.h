#pragma once

#include <string>
#include <utility>

#include "analysis/Boot.h"
#include "supervisor/Boot.h"
#include "virtualphone/PhoneFile.h"

// PLUGIN is a file name, PHONES a folder; the build defines them.

inline virtualphone::PhoneDescription SamplePhone(const std::string& name) {
    return virtualphone::ReadPhoneFile(PHONES "/" + name + ".json");
}

inline analysis::Boot BootOf(virtualphone::PhoneDescription phone) {
    analysis::Boot boot;
    boot.phone = phone;
    boot.record = supervisor::Boot(std::move(phone), {.library = PLUGIN});
    return boot;
}
