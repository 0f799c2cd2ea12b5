#include <filesystem>
#include <fstream>
#include <map>
#include <sys/stat.h>

#include "platform/DevicePath.h"
#include "tests/support/Describe.h"
#include "tests/support/TestPhone.h"

namespace {

namespace fs = std::filesystem;

/// Changed files as "path mode hex".
std::vector<std::string> Changes(const virtualphone::VirtualPhone& phone) {
    std::vector<std::string> changes;
    for (const record::ChangedFile& file : phone.changedFiles()) {
        std::array<char, 16> mode;
        std::snprintf(mode.data(), mode.size(), " %04o ", file.mode);
        changes.push_back(file.path + mode.data() + HexText(file.bytes));
    }
    return changes;
}

TEST(DeviceFiles, EveryKindOfContent) {
    const virtualphone::TemporaryFolder side;
    std::ofstream(side.path() / "side.bin") << "side";
    const mode_t formerMask = umask(077);
    const virtualphone::TemporaryFolder root;
    record::Recorder recorder;
    const virtualphone::VirtualPhone phone(virtualphone::ParsePhone(R"({ "files": {
            "/vendor/fill": { "fill": "0x5A", "size": 3 },
            "/vendor/hex": { "hex": "0aB c\t" },
            "/vendor/text": { "text": "a\u0000b" },
            "/vendor/file": { "file": "side.bin" },
            "/vendor/empty": {},
            "/vendor/factory": { "dualcal": { "master": "0102", "block": { "fill": 7, "size": 2 } } },
            "/vendor/maintain": { "dualcal": { "master": "0102", "slave": "010A", "block": { "hex": "313233" },
                                               "crc": true } },
            "/vendor/ois": { "oiscal": { "version": 1, "fuseId": "AABB", "gainX": 9000, "gainY": 9100 } },
            "/vendor/ois0": { "oiscal": { "version": 0 } } } })",
                                                                    side.path(), "p.json"),
                                           root.path(), recorder);
    umask(formerMask);
    const std::map<std::string, std::string> contents = {
        {"/vendor/fill", "5A5A5A"},
        {"/vendor/hex", "0ABC"},
        {"/vendor/text", "610062"},
        {"/vendor/file", "73696465"},
        {"/vendor/empty", ""},
        {"/vendor/factory", "020102000707"},
        {"/vendor/maintain", "02010202010A313233A83A"},
        {"/vendor/ois", "0102AABB000023280000238C8077"},
        {"/vendor/ois0", "000000000000000000000000"},
    };
    for (const auto& [path, hex] : contents) {
        const fs::path file = DevicePath(path.c_str());
        std::ifstream stream(file, std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), {}};
        EXPECT_EQ(HexText(bytes), hex) << path;
        EXPECT_EQ(static_cast<unsigned>(fs::status(file).permissions()), 0644U) << path;
    }
    EXPECT_TRUE(fs::is_directory(DevicePath("/data/vendor/camera")));
}

TEST(DeviceFiles, ChangesInContentOrMode) {
    TestPhone phone(PhoneBuilder().file("/a", {'1'}).file("/b", {'1'}).file("/c", {'1'}).file("/d", {}));
    EXPECT_THAT(Changes(phone.phone()), testing::IsEmpty());
    phone.write("/a", {'1'});
    phone.write("/b", {'2'});
    fs::permissions(DevicePath("/c"), fs::perms::owner_all);
    fs::remove(DevicePath("/d"));
    phone.write("/data/vendor/camera/new", {0xAB, 0xCD});
    fs::permissions(DevicePath("/data/vendor/camera/new"), fs::perms::owner_read);
    // What is no regular file is passed over, and never opened: a pipe without a writer would block.
    fs::create_symlink("/etc/passwd", DevicePath("/link"));
    fs::create_directory_symlink("/etc", DevicePath("/folder"));
    ASSERT_EQ(mkfifo(DevicePath("/pipe").c_str(), 0600), 0);
    EXPECT_THAT(Changes(phone.phone()),
                testing::ElementsAre("/b 0644 32", "/c 0700 31", "/data/vendor/camera/new 0400 ABCD"));
}

TEST(DeviceFiles, AnUsedRootKeepsItsFilesAndTakesFreshOnes) {
    const virtualphone::TemporaryFolder root;
    std::ofstream(root.path() / "kept") << "kept";
    fs::create_symlink("elsewhere", root.path() / "a");
    record::Recorder recorder;
    const virtualphone::VirtualPhone phone(PhoneBuilder().file("/a", {1}).description(), root.path() / "",
                                           recorder);
    EXPECT_FALSE(fs::exists(root.path() / "elsewhere"));
    EXPECT_THAT(Changes(phone), testing::IsEmpty());
    EXPECT_EQ(DevicePath("/a"), root.path().string() + "/a");
}

TEST(DeviceFiles, WhatCannotBeLaidIsSaid) {
    const virtualphone::TemporaryFolder root;
    const std::string path = root.path().string();
    std::ofstream(root.path() / "file") << "x";
    fs::create_directory(root.path() / "folder");
    const auto errorOf = [](const PhoneBuilder& fitted, const std::string& rootPath) {
        return PhoneFileErrorOf([&] {
            record::Recorder recorder;
            virtualphone::VirtualPhone(fitted.description(), rootPath, recorder);
        });
    };
    const std::string noFolder = ": cannot make the folder: Not a directory";
    EXPECT_EQ(errorOf(PhoneBuilder().file("/folder", {}), path),
              "/folder: cannot lay the file: a folder of that name is there");
    EXPECT_EQ(errorOf(PhoneBuilder().file("/file/x", {}), path), "/file" + noFolder);
    EXPECT_EQ(errorOf(PhoneBuilder().file("/x", {}).file("/x/y/z", {}), path), "/x/y" + noFolder);
    EXPECT_EQ(errorOf({}, path + "/file"),
              path + "/file: cannot use the folder as a phone's root: Not a directory");
    EXPECT_EQ(errorOf({}, "/"), "/: cannot use the folder as a phone's root: it is this machine's own");
    // None of the failures leaves a phone behind.
    EXPECT_EQ(DevicePath("/x"), "/x");
}

}  // namespace
