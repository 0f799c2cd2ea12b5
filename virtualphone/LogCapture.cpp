#include "virtualphone/internal/LogCapture.h"

#include <android/log.h>

#include "virtualphone/internal/PhoneState.h"

namespace virtualphone {

namespace {

void RecordLine(const __android_logger_data* line, const char* message) {
    if (PhoneState* const phone = CurrentPhone()) {
        phone->sink.take(record::LogLine{.priority = line->priority,
                                         .tag = line->tag == nullptr ? "" : line->tag,
                                         .message = message == nullptr ? "" : message});
    }
}

}  // namespace

LogCapture::LogCapture()
    // liblog drops what is below "info" unless told otherwise.
    : mFormerPriority(__android_log_set_minimum_priority(ANDROID_LOG_VERBOSE)) {
    __android_log_set_logger(RecordLine);
}

LogCapture::~LogCapture() {
    __android_log_set_logger(__android_log_stderr_logger);
    __android_log_set_minimum_priority(mFormerPriority);
}

}  // namespace virtualphone
