#include <array>
#include <cerrno>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platforminfo/UniqueFd.h"

namespace {

TEST(UniqueFd, ReadUpToTakesWhatArrivesInPieces) {
    // Each message of such a socket is a read of its own.
    std::array<int, 2> ends{};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()), 0);
    const UniqueFd reader(ends[0]);
    {
        const UniqueFd writer(ends[1]);
        for (const std::string piece : {"ab", "c", "de", "f"}) {
            ASSERT_EQ(write(writer.get(), piece.data(), piece.size()), std::ssize(piece));
        }
    }
    std::string bytes(10, '#');
    auto* const buffer = reinterpret_cast<unsigned char*>(bytes.data());
    EXPECT_EQ(ReadUpTo(reader.get(), buffer, 4), 4U);
    errno = EINTR;  // of an earlier call
    EXPECT_EQ(ReadUpTo(reader.get(), buffer + 4, 6), 1U);
    EXPECT_EQ(bytes, "abcdf#####");
    EXPECT_EQ(ReadUpTo(-1, buffer, 1), 0U);
}

}  // namespace
