#include "supervisor/internal/SharedLog.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <sys/mman.h>
#include <system_error>

namespace supervisor {

namespace {

void* Map(std::size_t size) {
    void* const memory =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::system_error(errno, std::generic_category(), "cannot map memory for a boot's record");
    }
    return memory;
}

}  // namespace

void SharedLog::Unmap::operator()(void* memory) const {
    munmap(memory, size);
}

SharedLog::SharedLog(std::size_t capacity)
    : mRoom(capacity), mMemory(Map(capacity + sizeof(Head)), Unmap{capacity + sizeof(Head)}) {
    std::construct_at(static_cast<Head*>(mMemory.get()));
}

void SharedLog::append(std::span<const std::uint8_t> message, std::size_t spare) {
    const auto size = static_cast<std::uint32_t>(message.size());
    const std::uint64_t used = head().used;
    if (message.size() + sizeof size + spare > mRoom - used) {
        ++head().lost;
        return;
    }
    std::memcpy(messages() + used, &size, sizeof size);
    std::memcpy(messages() + used + sizeof size, message.data(), size);
    head().used = used + sizeof size + size;
    ++head().count;
}

void SharedLog::clear() {
    constexpr std::size_t kKept = std::size_t{4} << 20;
    if (used() > kKept) {
        madvise(mMemory.get(), mRoom + sizeof(Head), MADV_REMOVE);
    }
    head().used = 0;
    head().count = 0;
    head().lost = 0;
}

std::size_t SharedLog::count() const {
    return std::min<std::size_t>(head().count, used() / sizeof(std::uint32_t));
}

void SharedLog::prepare(std::size_t size) {
    madvise(mMemory.get(), std::min(size + sizeof(Head), mRoom), MADV_POPULATE_WRITE);
}

}  // namespace supervisor
