#include "tests/zvcam/Zvcam.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

const std::string kWide = "0102030405060708090A0B0C";
const std::string kUltra = "3132333435363738393A3B3C3D3E3F40";

TEST_F(Zvcam, CalibrationMakesSealsAndChecks) {
    const Result made = zvcam("calibration make-dual --master " + kWide + " --slave " + kUltra +
                              " --fill 21 --size 4096 -o factory.bin");
    EXPECT_EQ(made.exitCode, 0) << made.error;
    EXPECT_EQ(made.out, R"(factory.bin: dual-camera calibration, good
  layout  factory, without CRC
  master  0102030405060708090A0B0C  (12 bytes)
  slave   3132333435363738393A3B3C3D3E3F40  (16 bytes)
  block   4096 bytes of 0x15
  CRC     none stored, 0x40EF computed
)");
    EXPECT_EQ(zvcam("calibration seal factory.bin sealed.bin").exitCode, 0);
    std::string bytes = ReadText(file("sealed.bin"));
    EXPECT_EQ(bytes, ReadText(file("factory.bin")) + "\x40\xEF");
    bytes.back() = 0;
    write("bad.bin", bytes);
    EXPECT_EQ(zvcam("calibration bad.bin").out.substr(0, 79),
              "bad.bin: dual-camera calibration, BAD: CRC 0x4000 stored, 0x40EF computed\n  lay");
    EXPECT_EQ(zvcam("calibration seal bad.bin sealed.bin --force").exitCode, 0);
    EXPECT_EQ(zvcam("calibration sealed.bin --phone '" PHONES "/halcyrion.json'").out,
              R"(sealed.bin: dual-camera calibration, good
  layout  maintained
  master  0102030405060708090A0B0C  (12 bytes)  back main
  slave   3132333435363738393A3B3C3D3E3F40  (16 bytes)  back ultra
  block   4096 bytes of 0x15
  CRC     0x40EF stored, 0x40EF computed
  pair    wide and ultra
)");
    const Result ois =
        zvcam("calibration make-ois --fuse-id '01 02' --gain-x 4000 --gain-y 17001 -o ois.bin");
    EXPECT_EQ(ois.exitCode, 1);
    EXPECT_EQ(ois.out, R"(ois.bin: stabiliser calibration, BAD: its gains are not 4000 to 17000
  version  1
  fuse id  0102  (2 bytes)
  gain X   4000
  gain Y   17001  not 4000 to 17000
  CRC      0xC5F6 stored, 0xC5F6 computed
)");
}

TEST_F(Zvcam, CalibrationFolderNamesWhatIsTaken) {
    const std::string make = "calibration make-dual --fill 1 --size 2048 --master ";
    std::filesystem::create_directory(file("persist"));
    EXPECT_EQ(zvcam(make + kUltra + " --slave " + kWide + " -o persist/bin-dcal").exitCode, 0);
    EXPECT_EQ(zvcam("calibration make-ois --fuse-id " + kWide +
                    " --gain-x 9000 --gain-y 9100 -o persist/com.zelvan.oiscal.w.bin")
                  .exitCode,
              0);
    write("persist/notes", "");
    EXPECT_EQ(zvcam("calibration persist").exitCode, 0);
    const Result good = zvcam("calibration persist/ --phone '" PHONES "/halcyrion.json'");
    EXPECT_EQ(good.exitCode, 1);
    EXPECT_EQ(good.out,
              "persist/: 1 dual-camera calibration file, in the order in which this folder lists them\n"
              "  1  bin-dcal  good  factory  " +
                  kUltra + "  " + kWide +
                  "  wide and ultra\n"
                  "  stabiliser  com.zelvan.oiscal.w.bin  good  " +
                  kWide +
                  "\n"
                  "  not considered  notes\n"
                  "  taken\n"
                  "    wide and ultra  bin-dcal\n"
                  "    wide and tele   NONE, which leaves /vendor/etc/camera/com.zelvan.dcal.wt.golden\n"
                  "    stabiliser      com.zelvan.oiscal.w.bin\n");
    // The search for fuse ids ends at the front module, before the ultra-wide one.
    EXPECT_THAT(zvcam("calibration persist --phone '" PHONES "/fieldtrouble.json'").out,
                HasSubstr(kWide + "  no pair of this phone\n"));
    std::filesystem::create_directory(file("persist/dcal.bin"));
    const Result folder = zvcam("calibration persist");
    EXPECT_EQ(folder.exitCode, 1);
    EXPECT_THAT(folder.out, HasSubstr("  dcal.bin  BAD: a folder\n"));
}

TEST_F(Zvcam, CalibrationEndsWithOneLineOnWhatItCannotUse) {
    write("empty", "");
    write("cut", std::string("\x01\x30\x01\x31", 4) + std::string(2040, 'x'));
    std::ofstream(file("huge")).close();
    std::filesystem::resize_file(file("huge"), 100'000'000);
    std::filesystem::create_directory(file("folder"));
    const struct {
        std::string arguments;
        int status;
        std::string line;
    } kCases[] = {
        {"empty", 1, "empty: BAD: empty"},
        {"cut", 1,
         "cut: BAD: no dual-camera file (2040 bytes follow the fuse ids, and no block has so many) and no "
         "stabiliser "
         "file (CRC 0x7878 stored, 0x0A94 computed)"},
        {"folder", 1, "folder: BAD: no calibration file"},
        {"none", 2,
         "zvcam: none: expected a calibration file or a folder of them, got nothing that can be read (No "
         "such file or directory)"},
        {"huge", 2,
         "zvcam: huge: expected a calibration file or a folder of them, got more than 67108864 bytes"},
        {"- -", 2, "zvcam: standard input holds one file, not several"},
        {"seal empty x", 2, "zvcam: empty: empty"},
        {"seal cut cut", 2,
         "zvcam: cut: no dual-camera file (2040 bytes follow the fuse ids, and no block has so many) and no "
         "stabiliser "
         "file (CRC 0x7878 stored, 0x0A94 computed)"},
        {"make-dual --master 01 --block cut -o x", 2,
         "zvcam: cut: expected a calibration block of 419, 2048 or 4096 bytes, got one of 2044"},
        {"make-ois --fuse-id 012 --gain-x 9000 --gain-y 9000 -o x", 2,
         "zvcam: --fuse-id: expected at most 255 bytes, each as two hexadecimal digits, got \"012\"; `zvcam "
         "calibration make-ois --help` tells more"},
        {"make-dual --master " + std::string(512, 'A') + " --fill 1 --size 419 -o x", 2,
         "zvcam: --master: expected at most 255 bytes, each as two hexadecimal digits, got 256 bytes; `zvcam "
         "calibration make-dual --help` tells more"},
        {"make-dual --fill 1 --size 419 -o folder --force", 2,
         "zvcam: cannot write folder: expected a file, got a folder"},
        {"make-ois --fuse-id 01 --gain-x 9000 --gain-y 9000 -o cut", 2,
         "zvcam: cannot write cut: it exists; --force replaces it"},
    };
    for (const auto& [arguments, status, line] : kCases) {
        const Result result = zvcam("calibration " + arguments);
        EXPECT_EQ(result.exitCode, status) << arguments;
        EXPECT_EQ(result.out + result.error, line + "\n");
    }
}

}  // namespace
