#include "tests/support/TestPlugin.h"

#include <utility>

TestPlugin::TestPlugin() : mDevicesBefore(DeviceId2RoleId) {}

TestPlugin::~TestPlugin() {
    DeviceId2RoleId = std::move(mDevicesBefore);
}
