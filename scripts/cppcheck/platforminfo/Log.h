#pragma once

#include <android/log.h>

// What cppcheck sees in the place of platforminfo/Log.h, whose __VA_OPT__ it does not read.

inline constexpr const char* kLogTag = "CameraPlatformInfoZelvan";
int CallingThreadId();
constexpr const char* OrNull(const char* text) {
    return text == nullptr ? "(null)" : text;
}

#define LOG_AS(priority, operation, ...) __android_log_print(priority, (operation).name(), __VA_ARGS__)
#define LOGD(operation, ...) LOG_AS(ANDROID_LOG_DEBUG, operation, __VA_ARGS__)
#define LOGI(operation, ...) LOG_AS(ANDROID_LOG_INFO, operation, __VA_ARGS__)
#define LOGE(operation, ...) LOG_AS(ANDROID_LOG_ERROR, operation, __VA_ARGS__)
