#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "analysis/Diagnosis.h"
#include "analysis/Modules.h"
#include "virtualphone/PhoneDescription.h"

namespace analysis {

/// A file that a phone starts with.
struct LaidFile {
    std::string path;
    std::string words;  ///< "dual-camera calibration of back main and back ultra, 4096 bytes"
};

/// What a phone is, as far as its description tells without a boot.
struct PhoneCheck {
    std::vector<Module> modules;  ///< by sensor index; role -1 for a sensor that is no module of this phone
    std::vector<LaidFile> files;
    std::vector<Finding> findings;  ///< the worst first

    bool bad() const;  ///< whether a finding is an error
};

PhoneCheck Check(const virtualphone::PhoneDescription& phone);

/// The role of the module at a sensor index; -1 where it has none, or an earlier sensor has the same.
int RoleOfSensor(const virtualphone::PhoneDescription& phone, std::size_t index);

}  // namespace analysis
