#pragma once

#include "virtualphone/Record.h"

namespace virtualphone {

/// Sends the Android log of this process, every priority of it, to a record instead of standard error.
class LogCapture {
  public:
    explicit LogCapture(Record& record);
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

  private:
    int mFormerPriority;
};

}  // namespace virtualphone
