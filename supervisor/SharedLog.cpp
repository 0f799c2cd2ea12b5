#include "supervisor/internal/SharedLog.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <sys/mman.h>
#include <system_error>

namespace supervisor {

namespace {

/// @param size where so much cannot be had, it is made less.
void* Map(std::size_t& size) {
    /// Holds the record of any phone that is known.
    constexpr std::size_t kLeast = std::size_t{4} << 20;
    for (;;) {
        void* const memory =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory != MAP_FAILED) {
            return memory;
        }
        if (errno != ENOMEM || size / 2 < kLeast) {
            throw std::system_error(errno, std::generic_category(), "cannot map memory for a boot's record");
        }
        size /= 2;
    }
}

}  // namespace

void SharedLog::Unmap::operator()(void* memory) const {
    munmap(memory, size);
}

SharedLog::SharedLog(std::size_t capacity) : mSize(capacity + sizeof(Head)), mMemory(nullptr, Unmap{0}) {
    void* const memory = Map(mSize);
    mMemory = {memory, Unmap{mSize}};
    std::construct_at(static_cast<Head*>(mMemory.get()));
}

bool SharedLog::append(std::span<const std::uint8_t> message, std::size_t spare) {
    const auto size = static_cast<std::uint32_t>(message.size());
    // Asked for once: another process may change it.
    const std::size_t before = used();
    if (message.size() + sizeof size + spare > room() - before) {
        ++head().lost;
        return false;
    }
    std::memcpy(messages() + before, &size, sizeof size);
    std::memcpy(messages() + before + sizeof size, message.data(), size);
    head().used = before + sizeof size + size;
    ++head().count;
    return true;
}

void SharedLog::clear() {
    constexpr std::size_t kKept = std::size_t{4} << 20;
    if (used() > kKept) {
        madvise(mMemory.get(), mSize, MADV_REMOVE);
    }
    head().used = 0;
    head().count = 0;
    head().lost = 0;
}

std::size_t SharedLog::count() const {
    return std::min<std::size_t>(head().count, used() / sizeof(std::uint32_t));
}

}  // namespace supervisor
