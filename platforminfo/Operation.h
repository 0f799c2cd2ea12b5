#pragma once

#include <android/log.h>

#include "platform/IMetadata.h"
#include "platforminfo/Log.h"
#include "platforminfo/NamedTable.h"

namespace NSCam {
class IHalSensorList;
class ILogicalDeviceList;
}  // namespace NSCam

/// How a refused update is logged: `lead`, then ":%d err:%d" with the tag and the result, then `tail`.
struct UpdateFailure {
    const char* lead = "ZV IMetadata::update(), tag";
    const char* tail = "";
    int priority = ANDROID_LOG_ERROR;
};

/// One operation of the plug-in while it runs. It asks the platform, looks tables up and stores tags, and
/// what fails is logged in its name; helpers take it along, and speak for the operation that called them:
///
///     const Operation self(__func__);
///     LOGI(self, "enter");
///     const RoleIdDesc* const device = self.find(DeviceId2RoleId, instanceId);
class Operation {
  public:
    /// @param name a text that outlives the object.
    explicit constexpr Operation(const char* name) : mName(name) {}

    constexpr const char* name() const { return mName; }

    /// The row of a key; null, after an error line, where the table has none.
    template <typename Row>
    const Row* find(const NamedTable<Row>& table, int key) const {
        const auto found = table.find(key);
        if (found == table.end()) {
            LOGE(*this, "find %s[%d] error!", table.name(), key);
            return nullptr;
        }
        return &found->second;
    }

    /// The platform's sensors; null, after the complaint as an error line, while it has no list of them.
    /// Operations word the complaint differently.
    NSCam::IHalSensorList* sensorList(const char* complaint = "MAKE_HalSensorList is NULL!") const;

    /// The platform's camera devices, likewise.
    NSCam::ILogicalDeviceList* logicalDevices(const char* complaint = "Cannot get logical device list") const;

    /// Stores an entry under its tag and logs a refusal.
    /// @return 0, or the platform's error code.
    int update(NSCam::IMetadata& meta, const NSCam::IMetadata::IEntry& entry,
               const UpdateFailure& failure = {}) const;

    /// The log line of a refused update.
    void logRefusal(const UpdateFailure& failure, NSCam::IMetadata::Tag_t tag, int error) const;

  private:
    const char* mName;
};
