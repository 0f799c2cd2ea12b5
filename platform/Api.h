#pragma once

/// Marks what the phone's platform libraries export; everything else is hidden by default.
#define PLATFORM_API __attribute__((visibility("default")))
