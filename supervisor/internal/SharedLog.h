#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

namespace supervisor {

/// Messages from one process to the one that forked it, in memory that both share. A message that has been
/// appended stays, whatever happens to the writer, and costs no system call.
class SharedLog {
  public:
    /// @param capacity bytes of address space, fewer where there are not so many; memory is taken as messages
    /// fill it.
    /// @throws std::system_error
    explicit SharedLog(std::size_t capacity);

    /// Appends a message, one writer at a time. Where it does not fit with `spare` bytes left behind it, it
    /// is counted as lost. Nothing outside the memory is touched, whatever another process has left in it.
    /// @return whether it fitted.
    bool append(std::span<const std::uint8_t> message, std::size_t spare);

    /// Forgets all messages. Memory that a long record took is given back.
    void clear();

    /// Number of messages as the writer counts them, which is not trusted: none counts that would not fit.
    std::size_t count() const;

    struct End {
        std::uint64_t lost = 0;
        bool damaged = false;  ///< what follows the messages is no message
    };
    /// Hands all messages to `take`, once the writer has ended. It is not trusted: none lies outside the
    /// memory.
    template <typename Take>
    End read(Take take) const {
        std::span<const std::uint8_t> rest = written();
        std::uint32_t size = 0;
        while (rest.size() >= sizeof size) {
            std::memcpy(&size, rest.data(), sizeof size);
            if (size > rest.size() - sizeof size) {
                break;
            }
            take(rest.subspan(sizeof size, size));
            rest = rest.subspan(sizeof size + size);
        }
        return {.lost = head().lost, .damaged = !rest.empty()};
    }

    /// Bytes that the messages take.
    std::size_t used() const { return written().size(); }

  private:
    struct Head {
        std::atomic<std::uint64_t> used;  ///< bytes of whole messages behind the head
        std::atomic<std::uint64_t> count;
        std::atomic<std::uint64_t> lost;
    };
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

    struct Unmap {
        std::size_t size;
        void operator()(void* memory) const;
    };

    Head& head() const { return *static_cast<Head*>(mMemory.get()); }
    std::uint8_t* messages() const { return static_cast<std::uint8_t*>(mMemory.get()) + sizeof(Head); }

    std::span<const std::uint8_t> written() const {
        return {messages(), std::min<std::size_t>(head().used, room())};
    }

    std::size_t room() const { return mSize - sizeof(Head); }

    std::size_t mSize;
    std::unique_ptr<void, Unmap> mMemory;
};

}  // namespace supervisor
