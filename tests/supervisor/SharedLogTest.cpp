#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include <gmock/gmock.h>

#include "supervisor/internal/SharedLog.h"

namespace {

using supervisor::SharedLog;

constexpr std::uint64_t kHuge = std::uint64_t{1} << 60;
constexpr std::uint64_t kAll = ~std::uint64_t{0};

/// The bytes of the messages.
std::vector<std::vector<std::uint8_t>> MessagesOf(const SharedLog& log) {
    std::vector<std::vector<std::uint8_t>> messages;
    log.read([&](std::span<const std::uint8_t> message) {
        messages.emplace_back(message.begin(), message.end());
    });
    return messages;
}

/// Whatever a process that shares the memory has left in its head, no message leads out of it.
TEST(SharedLog, ItsHeadIsNotTrusted) {
    const std::array<std::uint8_t, 3> message = {1, 2, 3};
    for (const std::uint64_t scribbled : {kAll, kHuge, std::uint64_t{70'000}, std::uint64_t{65'530}}) {
        SharedLog log(65536);
        ASSERT_TRUE(log.append(message, 0));
        log.read([&](std::span<const std::uint8_t> first) {
            // Before the first message stand its size and the head: three numbers of 64 bits.
            auto* const head =
                const_cast<std::uint8_t*>(first.data()) - sizeof(std::uint32_t) - 3 * sizeof scribbled;
            std::memcpy(head, &scribbled, sizeof scribbled);
            std::memcpy(head + sizeof scribbled, &scribbled, sizeof scribbled);
        });
        EXPECT_FALSE(log.append(message, 0)) << scribbled;
        EXPECT_LE(log.used(), 65536U);
        EXPECT_LE(log.count(), 65536U / sizeof(std::uint32_t));
        log.clear();
        ASSERT_TRUE(log.append(message, 0));
        EXPECT_THAT(MessagesOf(log), testing::ElementsAre(testing::ElementsAreArray(message)));
    }
}

}  // namespace
