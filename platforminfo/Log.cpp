#include "platforminfo/Log.h"

#include <cstdint>
#include <pthread.h>
#include <unistd.h>

namespace {

/// One value a thread, for as long as the library is loaded.
class ThreadKey {
  public:
    ThreadKey() : mMade(pthread_key_create(&mKey, nullptr) == 0) {}
    ~ThreadKey() {
        if (mMade) {
            pthread_key_delete(mKey);
        }
    }
    ThreadKey(const ThreadKey&) = delete;
    ThreadKey& operator=(const ThreadKey&) = delete;

    /// 0 where the calling thread has set none.
    std::intptr_t get() const {
        return mMade ? reinterpret_cast<std::intptr_t>(pthread_getspecific(mKey)) : 0;
    }
    void set(std::intptr_t value) const {
        if (mMade) {
            pthread_setspecific(mKey, reinterpret_cast<void*>(value));
        }
    }

  private:
    pthread_key_t mKey{};
    bool mMade;
};

}  // namespace

int CallingThreadId() {
    // No thread_local: that memory goes with an unloaded library, while tools that visit the memory of all
    // threads at exit, LeakSanitizer among them, still look for it.
    static const ThreadKey ids;
    std::intptr_t id = ids.get();
    if (id == 0) {
        id = gettid();
        ids.set(id);
    }
    return static_cast<int>(id);
}
