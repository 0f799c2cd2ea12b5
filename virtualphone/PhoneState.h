#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "virtualphone/CamCal.h"
#include "virtualphone/DeviceFiles.h"
#include "virtualphone/LogCapture.h"
#include "virtualphone/LogicalDevices.h"
#include "virtualphone/MetadataProviders.h"
#include "virtualphone/PhoneDescription.h"
#include "virtualphone/Record.h"
#include "virtualphone/SensorDrivers.h"
#include "virtualphone/SensorList.h"

namespace virtualphone {

/// All of a phone that is switched on. Its parts borrow the description and the record.
struct PhoneState {
    PhoneState(PhoneDescription phone, const std::filesystem::path& rootFolder);

    PhoneDescription description;
    Record record;
    std::map<std::string, std::string> properties;
    DeviceFiles files;
    SensorList sensorList;
    SensorDrivers sensorDrivers;
    LogicalDeviceList logicalDevices;
    CamCal camCal;
    MetadataProviders providers;
    LogCapture log;
};

/// The phone of this process; null while there is none.
PhoneState* CurrentPhone();

}  // namespace virtualphone
