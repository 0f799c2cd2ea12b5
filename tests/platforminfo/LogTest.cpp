#include <sys/types.h>
#include <thread>
#include <unistd.h>

#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

TEST(Log, EveryLineLeadsWithTheThreadThatSpeaks) {
    const TestPhone phone;
    pid_t other = 0;
    TestPlugin().MetadataUpdate();
    std::thread([&other] {
        other = gettid();
        TestPlugin().MetadataUpdate();
    }).join();
    std::vector<std::string> messages;
    for (const auto& line : phone.record().log) {
        EXPECT_EQ(line.tag, "CameraPlatformInfoZelvan");
        messages.push_back(line.message);
    }
    std::vector<std::string> expected;
    for (const pid_t thread : {gettid(), other}) {
        for (const char* const text : {"enter", "exit"}) {
            expected.push_back("(" + std::to_string(thread) + ")[MetadataUpdate] " + text);
        }
    }
    EXPECT_EQ(messages, expected);
}

}  // namespace
