#pragma once

#include <mutex>
#include <utility>
#include <vector>

#include "record/Events.h"

namespace record {

/// Takes events in the order in which they happen, from any thread.
class EventSink {
  public:
    virtual void take(Event event) = 0;

  protected:
    ~EventSink() = default;
};

/// Keeps the events in memory; an event's number is its position.
class Recorder final : public EventSink {
  public:
    void take(Event event) override {
        const std::lock_guard lock(mMutex);
        mEvents.push_back(std::move(event));
    }

    /// A copy of all so far.
    std::vector<Event> events() const {
        const std::lock_guard lock(mMutex);
        return mEvents;
    }

  private:
    mutable std::mutex mMutex;
    std::vector<Event> mEvents;
};

}  // namespace record
