#pragma once

namespace virtualphone {

/// Sends the Android log of this process, every priority of it, to the phone that is switched on instead of
/// to standard error.
class LogCapture {
  public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

  private:
    int mFormerPriority;
};

}  // namespace virtualphone
