#pragma once

/// Marks what programs that boot a virtual phone use; everything else is hidden by default.
#define VIRTUALPHONE_API __attribute__((visibility("default")))
