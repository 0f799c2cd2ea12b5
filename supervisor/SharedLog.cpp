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
}

SharedLog::Contents SharedLog::read() const {
    const std::uint64_t used = std::min<std::uint64_t>(head().used, mRoom);
    Contents contents{.messages = {}, .lost = head().lost};
    std::span<const std::uint8_t> rest(messages(), used);
    while (!rest.empty()) {
        std::uint32_t size = 0;
        if (rest.size() < sizeof size) {
            break;
        }
        std::memcpy(&size, rest.data(), sizeof size);
        if (size > rest.size() - sizeof size) {
            break;
        }
        contents.messages.push_back(rest.subspan(sizeof size, size));
        rest = rest.subspan(sizeof size + size);
    }
    contents.damaged = !rest.empty();
    return contents;
}

}  // namespace supervisor
