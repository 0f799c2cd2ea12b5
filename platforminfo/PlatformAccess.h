#pragma once

#include "platform/IHalSensorList.h"
#include "platform/ILogicalDeviceList.h"

/// The platform's lists, or null after an error line in the name of `function`. The complaint is a parameter
/// because operations word it differently.

NSCam::IHalSensorList* GetSensorList(const char* function,
                                     const char* complaint = "MAKE_HalSensorList is NULL!");

NSCam::ILogicalDeviceList* GetLogicalDeviceList(const char* function,
                                                const char* complaint = "Cannot get logical device list");
