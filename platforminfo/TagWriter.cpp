#include "platforminfo/TagWriter.h"

#include "platforminfo/Log.h"

int UpdateTag(const char* function, NSCam::IMetadata& meta, const NSCam::IMetadata::IEntry& entry,
              const UpdateFailure& failure) {
    const int error = meta.update(entry.tag(), entry);
    if (error != 0) {
        LogUpdateFailure(function, failure, entry.tag(), error);
    }
    return error;
}

void LogUpdateFailure(const char* function, const UpdateFailure& failure, NSCam::IMetadata::Tag_t tag,
                      int error) {
    LOG_AS(failure.priority, function, "%s:%d err:%d%s", failure.lead, static_cast<int>(tag), error,
           failure.tail);
}
