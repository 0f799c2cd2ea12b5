#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "record/Recorder.h"
#include "virtualphone/CallFaults.h"
#include "virtualphone/DeviceFiles.h"
#include "virtualphone/PhoneDescription.h"
#include "virtualphone/internal/CamCal.h"
#include "virtualphone/internal/LogCapture.h"
#include "virtualphone/internal/LogicalDevices.h"
#include "virtualphone/internal/MetadataProviders.h"
#include "virtualphone/internal/MetadataWatch.h"
#include "virtualphone/internal/SensorDrivers.h"
#include "virtualphone/internal/SensorList.h"

namespace virtualphone {

/// All of a phone that is switched on. Its parts borrow the description and the sink.
struct PhoneState final : MetadataWatch {
    PhoneState(PhoneDescription phone, const DeviceFiles& laid, record::EventSink& events,
               FailingCalls failingCalls);

    int update(NSCam::IMetadata::Tag_t tag, const NSCam::IMetadata::IEntry& entry) override;

    PhoneDescription description;
    FailingCalls failing;
    std::map<Call, std::uint64_t> calls;  ///< made so far, where there are failing ones
    record::EventSink& sink;
    std::map<std::string, std::string> properties;
    const DeviceFiles& files;
    SensorList sensorList;
    SensorDrivers sensorDrivers;
    LogicalDeviceList logicalDevices;
    CamCal camCal;
    MetadataProviders providers;
    LogCapture log;
    MetadataWatchInstalled watch;
};

/// The phone of this process; null while there is none.
PhoneState* CurrentPhone();

/// Counts a call of the plug-in.
/// @return whether it is one that fails.
bool Fails(Call call);

}  // namespace virtualphone
