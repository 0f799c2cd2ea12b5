#include <climits>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sys/stat.h>

#include "tests/metadata/MetadataTest.h"

namespace {

/// How many bytes a read of the plug-in leaves out, for a file that claims more than it yields.
std::size_t withheldBytes = 0;

}  // namespace

// The linker binds the plug-in's calls of fread to the second of these, and the first to the C library's.
std::size_t RealRead(void* buffer, std::size_t size, std::size_t count, FILE* file) __asm__("__real_fread");
std::size_t ShortRead(void* buffer, std::size_t size, std::size_t count, FILE* file) __asm__("__wrap_fread");
std::size_t ShortRead(void* buffer, std::size_t size, std::size_t count, FILE* file) {
    return RealRead(buffer, size, count - withheldBytes, file);
}

namespace {

TEST(FileBuffer, WholeFileAndExtraZeros) {
    const TestPhone phone;
    const struct {
        std::vector<std::uint8_t> content;
        int extra;
        std::vector<std::uint8_t> buffer;
    } kCases[] = {{{1, 2, 255}, 2, {1, 2, 255, 0, 0}},
                  {{7}, 0, {7}},
                  {{}, 1, {0}},
                  {{}, 0, {}},
                  {Bytes(1 << 20, 7), 0, Bytes(1 << 20, 7)}};
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

TEST(FileBuffer, AsLargeAsItsSizeCanSay) {
    const TestPhone phone;
    phone.write("/data/beauty", {7});
    unsigned char* buf = nullptr;
    int size = 0;
    // Memory that nobody writes to takes no room.
    EXPECT_EQ(TestPlugin().allocBufAndReadFromFile("/data/beauty", &buf, &size, INT_MAX - 1), 0);
    std::free(buf);
    EXPECT_EQ(size, INT_MAX);
}

TEST(FileBuffer, FailuresLeaveTheOutputsAlone) {
    TestPhone phone;
    const std::string root = phone.phone().root();
    phone.write("/data/beauty", {1});
    phone.write("/data/huge", {});
    std::filesystem::resize_file(root + "/data/huge", std::uintmax_t{INT_MAX} + 1);
    ASSERT_EQ(mkfifo((root + "/data/pipe").c_str(), 0600), 0);
    const auto fail = [&phone](const char* path, int extra, const testing::Matcher<std::string>& line) {
        unsigned char byte = 0;
        unsigned char* buf = &byte;
        int size = -7;
        EXPECT_EQ(TestPlugin().allocBufAndReadFromFile(path, &buf, &size, extra), -1);
        EXPECT_EQ(buf, &byte);
        EXPECT_EQ(size, -7);
        EXPECT_THAT(phone.logOf("allocBufAndReadFromFile").back(), line);
    };
    fail("/data/none", 0, "E Beauty: failed to open file /data/none,err=2 No such file or directory");
    fail("/data/pipe", 0, "E Beauty: failed to get file size of /data/pipe,err=29 Illegal seek");
    fail("/data/huge", 0, "E Beauty calloc failed size=2147483648err=22 Invalid argument");
    fail("/data/beauty", INT_MAX, "E Beauty calloc failed size=1err=22 Invalid argument");
    fail("/data/beauty", -1, "E Beauty calloc failed size=1err=22 Invalid argument");
    // Which step fails for a folder is up to the file system.
    fail("/data", 0,
         testing::AnyOf(testing::StartsWith("E Beauty: failed to get file size of /data,err="),
                        testing::StartsWith("E Beauty calloc failed size="),
                        testing::StartsWith("E Beauty: read data from /data failed, size=")));
    withheldBytes = 1;
    fail("/data/beauty", 0, "E Beauty: read data from /data/beauty failed, size=1readout=0");
    withheldBytes = 0;
}

}  // namespace
