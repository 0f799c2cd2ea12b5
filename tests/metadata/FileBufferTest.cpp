#include <climits>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sys/stat.h>

#include "tests/metadata/MetadataTest.h"

namespace {

TEST(FileBuffer, WholeFileAndExtraZeros) {
    const TestPhone phone;
    const struct {
        std::vector<std::uint8_t> content;
        int extra;
        std::vector<std::uint8_t> buffer;
    } kCases[] = {{{1, 2, 255}, 2, {1, 2, 255, 0, 0}}, {{7}, 0, {7}}, {{}, 1, {0}}, {{}, 0, {}}};
    for (const auto& [content, extra, expected] : kCases) {
        phone.write("/data/beauty", content);
        unsigned char* buf = nullptr;
        int size = -7;
        EXPECT_EQ(TestPlugin().allocBufAndReadFromFile("/data/beauty", &buf, &size, extra), 0);
        const std::unique_ptr<unsigned char, decltype(&std::free)> owner(buf, std::free);
        ASSERT_NE(buf, nullptr);
        EXPECT_EQ(std::vector<std::uint8_t>(buf, buf + size), expected);
        EXPECT_EQ(phone.log().back(), "I [allocBufAndReadFromFile] Beauty get data from /data/beauty, size=" +
                                          std::to_string(content.size()));
    }
}

TEST(FileBuffer, FailuresLeaveTheOutputsAlone) {
    TestPhone phone;
    const std::string root = phone.phone().root();
    phone.write("/data/beauty", {1});
    phone.write("/data/huge", {});
    std::filesystem::resize_file(root + "/data/huge", std::uintmax_t{INT_MAX} + 1);
    ASSERT_EQ(mkfifo((root + "/data/pipe").c_str(), 0600), 0);
    // A file that claims more than it yields.
    std::filesystem::create_symlink("/sys/kernel/mm/transparent_hugepage/enabled", root + "/data/short");
    const auto fail = [&phone](const char* path, int extra, const std::string& line) {
        unsigned char byte = 0;
        unsigned char* buf = &byte;
        int size = -7;
        EXPECT_EQ(TestPlugin().allocBufAndReadFromFile(path, &buf, &size, extra), -1);
        EXPECT_EQ(buf, &byte);
        EXPECT_EQ(size, -7);
        EXPECT_THAT(phone.logOf("allocBufAndReadFromFile").back(), testing::StartsWith("E Beauty" + line));
    };
    fail("/data/none", 0, ": failed to open file /data/none,err=2 No such file or directory");
    fail("/data/pipe", 0, ": failed to get file size of /data/pipe,err=29 Illegal seek");
    fail("/data/huge", 0, " calloc failed size=2147483648err=22 Invalid argument");
    fail("/data/beauty", INT_MAX, " calloc failed size=1err=22 Invalid argument");
    fail("/data/beauty", -1, " calloc failed size=1err=22 Invalid argument");
    fail("/data", 0, "");  // which step fails is up to the file system
    fail("/data/short", 0, ": read data from /data/short failed, size=");
}

}  // namespace
