#pragma once

#include "platform/Api.h"

/// The platform's service for calibration blocks of a third party's algorithms.
class PLATFORM_API ThirdCalibration {
  public:
    /// Hands a calibration block of `length` bytes over; the service copies it.
    static void set3rdCalibration(unsigned char* data, int length);
};
