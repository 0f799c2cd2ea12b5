#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <sstream>
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

/// What a person has put into a root is never laid over; what boots have put there is.
TEST(DeviceFiles, AUsedRootKeepsWhatIsItsOwners) {
    const virtualphone::TemporaryFolder root;
    const fs::path& path = root.path();
    std::ofstream(path / "kept") << "kept";
    std::ofstream(path / "same") << "1";
    record::Recorder recorder;
    const auto boot = [&](const PhoneBuilder& builder) {
        return virtualphone::VirtualPhone(builder.description(), path / "", recorder);
    };
    const auto errorOf = [&](const PhoneBuilder& builder) {
        return PhoneFileErrorOf([&] { boot(builder); });
    };
    {
        const virtualphone::VirtualPhone phone = boot(PhoneBuilder().file("/a", {1}).file("/same", {'1'}));
        EXPECT_EQ(DevicePath("/a"), path.string() + "/a");
        EXPECT_THAT(Changes(phone), testing::IsEmpty());
        std::ofstream(path / "written") << "by the boot";
        EXPECT_THAT(Changes(phone), testing::SizeIs(1));
    }
    boot(PhoneBuilder().file("/a", {2}).file("/same", {2}).file("/written", {2}));
    const std::string notOurs = ": cannot lay the file: one that no boot has put there is there";
    EXPECT_EQ(errorOf(PhoneBuilder().file("/kept", {1})), "/kept" + notOurs);
    fs::create_symlink("elsewhere", path / "link");
    EXPECT_EQ(errorOf(PhoneBuilder().file("/link", {1})), "/link" + notOurs);
    EXPECT_FALSE(fs::exists(path / "elsewhere"));
}

/// A list that leads elsewhere or cannot be written is said before the boot, and after it.
TEST(DeviceFiles, AListThatCannotBeWrittenIsSaid) {
    using Files = virtualphone::DeviceFiles;
    const virtualphone::TemporaryFolder root;
    const fs::path list = root.path() / ".virtualphone";
    fs::create_symlink("elsewhere", list);
    EXPECT_EQ(PhoneFileErrorOf([&] {
                  Files(root.path(), {{"/a", {1}}});
              }),
              root.path().string() +
                  ": cannot use the folder as a phone's root: /.virtualphone, its list of "
                  "what boots put there, cannot be written: Too many levels of symbolic "
                  "links");
    EXPECT_FALSE(fs::exists(root.path() / "elsewhere"));
    fs::remove(list);
    const Files files(root.path(), {});
    fs::create_symlink("/dev/full", list);
    std::ofstream(root.path() / "written") << "x";
    record::BootRecord record;
    files.tell(record);
    EXPECT_THAT(record.troubles,
                testing::ElementsAre(testing::StartsWith("/.virtualphone: cannot be written")));
}

/// However the tree was before, it becomes what a fresh one would be.
TEST(DeviceFiles, RenewedTheyAreAsFreshOnes) {
    using Files = virtualphone::DeviceFiles;
    const std::vector<Files::Contents> phones = {
        {{"/a", {1}}, {"/b", {1}}},
        {{"/a", {2}}, {"/b", {1}}},
        {{"/a", {1}}, {"/ab", {1}}, {"/b", {2}}, {"/c", {1}}},
        {{"/b", {1}}, {"/d/e", {3}}},
        {{"/d", {4}}},
        {},
    };
    const std::vector<std::function<void(const fs::path&)>> boots = {
        [](const fs::path&) {},
        [](const fs::path& root) { std::ofstream(root / "new") << "x"; },
        [](const fs::path& root) { std::ofstream(root / "b") << "x"; },
        [](const fs::path& root) { fs::remove(root / "a"), fs::remove(root / "b"); },
        [](const fs::path& root) { fs::create_directories(root / "new" / "folder"); },
        [](const fs::path& root) { fs::create_symlink("/", root / "link"); },
        [](const fs::path& root) { fs::permissions(root / "data", fs::perms::owner_all); },
        [](const fs::path& root) {
            for (const char* name : {"a", "b"}) {
                std::error_code none;
                fs::permissions(root / name, fs::perms::owner_all, none);
            }
        },
    };
    // Everything by folder, the files of each in the order in which it lists them.
    using Tree = std::map<std::string, std::vector<std::string>>;
    const auto treeOf = [](const fs::path& root) {
        Tree tree;
        for (const auto& entry : fs::recursive_directory_iterator(root)) {
            const auto status = entry.symlink_status();
            std::stringstream line;
            line << entry.path().lexically_relative(root) << ' ' << static_cast<int>(status.type()) << ' '
                 << static_cast<int>(status.permissions()) << ' ';
            if (entry.is_regular_file()) {
                line << std::ifstream(entry.path()).rdbuf();
            }
            // Of a folder nothing but that it is there.
            tree[entry.is_regular_file() ? entry.path().parent_path().lexically_relative(root).string()
                                         : line.str()]
                .push_back(line.str());
        }
        return tree;
    };
    std::map<std::size_t, Tree> fresh;
    for (std::size_t i = 0; i < phones.size(); ++i) {
        const virtualphone::TemporaryFolder root;
        const Files files(root.path(), phones[i], Files::Root::Fresh);
        fresh[i] = treeOf(root.path());
    }
    for (const Files::Contents& first : phones) {
        for (const auto& boot : boots) {
            for (std::size_t second = 0; second < phones.size(); ++second) {
                const virtualphone::TemporaryFolder root;
                Files files(root.path(), first, Files::Root::Fresh);
                boot(root.path());
                record::BootRecord record;
                files.renew(phones[second], files.tell(record));
                EXPECT_EQ(treeOf(root.path()), fresh[second]);
                record::BootRecord none;
                files.tell(none);
                EXPECT_THAT(none.files, testing::IsEmpty());
                EXPECT_THAT(none.rewritten, testing::IsEmpty());
            }
        }
    }
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
    EXPECT_EQ(errorOf(PhoneBuilder().file("/x", {}).file("/x/y/z", {}), path),
              "/x: cannot lay the file: a folder of that name is there");
    EXPECT_EQ(errorOf({}, path + "/file"),
              path + "/file: cannot use the folder as a phone's root: Not a directory");
    EXPECT_EQ(errorOf({}, "/"), "/: cannot use the folder as a phone's root: it is this machine's own");
    // None of the failures leaves a phone behind.
    EXPECT_EQ(DevicePath("/x"), "/x");
}

}  // namespace
