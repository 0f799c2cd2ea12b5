#pragma once

#include <array>
#include <cstdint>

#include "platform/Api.h"

/// Kinds of calibration record that the driver extracts from a module's memory.
enum class CamCalRecordKind : std::uint32_t {
    ThreeA = 3,  ///< auto white balance, auto exposure and autofocus
};

/// One calibrated focus position.
struct CamCalAfPoint {
    std::int32_t distance = 0;      ///< subject distance, in tenths of the unit that is published
    std::int32_t lensPosition = 0;  ///< position of the lens actuator
};

/// The part of the 3A record that this system reads.
struct CamCal3ARecord {
    /// Bit 1: the module has autofocus.
    std::uint8_t capability = 0;
    std::array<CamCalAfPoint, 2> afPoints;
};

/// Bit of `CamCal3ARecord::capability`.
inline constexpr std::uint8_t CAM_CAL_CAPABILITY_AF = 1U << 1;

/// The platform's calibration driver.
class PLATFORM_API CamCalDrvBase {
  public:
    /// The shared driver, borrowed.
    /// @return null where the platform has none.
    static CamCalDrvBase* createInstance();

    /// Gives the driver's kernel resources back. The shared driver stays usable.
    virtual void release() = 0;

    /// Reads a calibration record of the module that a device bit addresses.
    /// @return 0, or an error code; then `record` is left as it is.
    virtual int readRecord(unsigned deviceBit, CamCalRecordKind kind, CamCal3ARecord& record) = 0;

  protected:
    ~CamCalDrvBase() = default;
};

namespace NSCam {

/// Raw access to the modules' memories.
class PLATFORM_API CamCalHelper {
  public:
    /// @return null where the platform has no calibration driver.
    static CamCalHelper* getInstance();

    /// Copies bytes of a module's memory into `destination`, which holds `length` bytes.
    /// @return the number of bytes read; anything but `length` is a failure.
    virtual std::uint32_t readMemory(std::uint32_t sensorId, unsigned deviceBit, std::uint32_t offset,
                                     std::uint32_t length, std::uint8_t* destination) = 0;

  protected:
    ~CamCalHelper() = default;
};

}  // namespace NSCam
