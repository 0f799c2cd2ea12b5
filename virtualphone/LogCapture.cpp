#include "virtualphone/LogCapture.h"

#include <android/log.h>

namespace virtualphone {

namespace {

/// A logger is a plain function, so it finds its record here.
Record* gRecord = nullptr;

void RecordLine(const __android_logger_data* line, const char* message) {
    gRecord->log.push_back({.priority = line->priority,
                            .tag = line->tag == nullptr ? "" : line->tag,
                            .message = message == nullptr ? "" : message});
}

}  // namespace

LogCapture::LogCapture(Record& record)
    // liblog drops what is below "info" unless told otherwise.
    : mFormerPriority(__android_log_set_minimum_priority(ANDROID_LOG_VERBOSE)) {
    gRecord = &record;
    __android_log_set_logger(RecordLine);
}

LogCapture::~LogCapture() {
    __android_log_set_logger(__android_log_stderr_logger);
    __android_log_set_minimum_priority(mFormerPriority);
    gRecord = nullptr;
}

}  // namespace virtualphone
