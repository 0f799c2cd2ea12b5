#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace supervisor {

/// Messages from one process to the one that forked it, in memory that both share. A message that has been
/// appended stays, whatever happens to the writer, and costs no system call.
class SharedLog {
  public:
    /// @param capacity bytes of address space; memory is taken as messages fill it.
    /// @throws std::system_error
    explicit SharedLog(std::size_t capacity);

    /// Appends a message, one writer at a time. Where it does not fit with `spare` bytes left behind it, it
    /// is counted as lost.
    void append(std::span<const std::uint8_t> message, std::size_t spare);

    /// All messages, once the writer has ended. It is not trusted: none lies outside the memory.
    struct Contents {
        std::vector<std::span<const std::uint8_t>> messages;
        std::uint64_t lost = 0;
        bool damaged = false;  ///< what follows the messages is no message
    };
    Contents read() const;

  private:
    struct Head {
        std::atomic<std::uint64_t> used;  ///< bytes of whole messages behind the head
        std::atomic<std::uint64_t> lost;
    };
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

    struct Unmap {
        std::size_t size;
        void operator()(void* memory) const;
    };

    Head& head() const { return *static_cast<Head*>(mMemory.get()); }
    std::uint8_t* messages() const { return static_cast<std::uint8_t*>(mMemory.get()) + sizeof(Head); }

    std::size_t mRoom;  ///< for messages
    std::unique_ptr<void, Unmap> mMemory;
};

}  // namespace supervisor
