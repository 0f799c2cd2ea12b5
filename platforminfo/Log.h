#pragma once

#include <android/log.h>

/// The plug-in's log: Android tag "CameraPlatformInfoZelvan", every text led by the calling thread's id and
/// the name of the operation that speaks.

inline constexpr const char* kLogTag = "CameraPlatformInfoZelvan";

/// The calling thread's id, asked from the kernel once a thread.
int CallingThreadId();

/// A text as log lines and properties show it where there may be none.
constexpr const char* OrNull(const char* text) {
    return text == nullptr ? "(null)" : text;
}

// Macros, so that the lead and the text are one format that the compiler checks, and one pass prints.

/// A line in the name of an `Operation`.
#define LOG_AS(priority, operation, format, ...)                                  \
    __android_log_print(priority, kLogTag, "(%d)[%s] " format, CallingThreadId(), \
                        (operation).name() __VA_OPT__(, ) __VA_ARGS__)

#define LOGD(operation, format, ...) LOG_AS(ANDROID_LOG_DEBUG, operation, format __VA_OPT__(, ) __VA_ARGS__)
#define LOGI(operation, format, ...) LOG_AS(ANDROID_LOG_INFO, operation, format __VA_OPT__(, ) __VA_ARGS__)
#define LOGE(operation, format, ...) LOG_AS(ANDROID_LOG_ERROR, operation, format __VA_OPT__(, ) __VA_ARGS__)
