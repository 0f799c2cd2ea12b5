#pragma once

#include <unistd.h>

#include <android/log.h>

/// The plug-in's log: Android tag "CameraPlatformInfoZelvan", every text led by the calling thread's id and
/// the name of the operation that speaks.

inline constexpr const char* kLogTag = "CameraPlatformInfoZelvan";

/// The calling thread's id, asked from the kernel once a thread.
inline int CallingThreadId() {
    thread_local const int id = gettid();
    return id;
}

/// A line in the name of `function`, for code that serves several operations.
#define LOG_AS(priority, function, format, ...)                                   \
    __android_log_print(priority, kLogTag, "(%d)[%s] " format, CallingThreadId(), \
                        function __VA_OPT__(, ) __VA_ARGS__)

#define LOGD(format, ...) LOG_AS(ANDROID_LOG_DEBUG, __func__, format __VA_OPT__(, ) __VA_ARGS__)
#define LOGI(format, ...) LOG_AS(ANDROID_LOG_INFO, __func__, format __VA_OPT__(, ) __VA_ARGS__)
#define LOGE(format, ...) LOG_AS(ANDROID_LOG_ERROR, __func__, format __VA_OPT__(, ) __VA_ARGS__)
