#include "tests/zvcam/Zvcam.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A dump of zeros in the plug-in's form, with the header id and maker of a front module.
std::string FrontDump() {
    std::string text;
    for (int offset = 0; offset < 16384; ++offset) {
        const int byte = offset == 1 ? 0x10 : offset == 8 ? 0x73 : offset > 8 && offset < 12 ? 0xFF : 0;
        char line[32];
        std::snprintf(line, sizeof(line), "0x%04x = 0x%02x\n", static_cast<unsigned>(offset),
                      static_cast<unsigned>(byte));
        text += line;
    }
    return text;
}

TEST_F(Zvcam, EepromChecksMendsAndConverts) {
    write("front", FrontDump());
    const Result bad = zvcam("eeprom front --set '0x751=01 02' --set 1928=ff --to-raw bad.raw");
    EXPECT_EQ(bad.exitCode, 1) << bad.error;
    EXPECT_EQ(bad.out, R"(front: 16384 bytes, BAD
  maker      0x10 aac
  lens id    0x73
  sensor id  0x00
  header id  0xFFFFFF73
  layout     halcyrion_aac_front_imx596_eeprom, front main
  fuse id    0000000000000000000000  (11 bytes at 0x0010)
  QR code    none (flag 0x00 at 0x1F91)
  checksums  range             at      stored  computed
    AWB      0x0751 to 0x0763  0x0764  0x00    0x04  BAD
    LSC      0x0788 to 0x0ED7  0x0ED8  0x00    0x01  BAD
  published
    vendor.camera.sensor.frontMain.fuseID  = _aac00220000000000000000000000000000000000000000000000000000000000000000000000000000000000
    vendor.camera.sensor.f.fuseID          = _aac00220000000000000000000000000000000000000000000000000000000000000000000000000000000000
    vendor.camera.sensor.f.sensorInfo      = 10, 73, 00
)");
    EXPECT_EQ(zvcam("eeprom - --seal --to-text - <bad.raw >good.txt").exitCode, 0);
    EXPECT_EQ(zvcam("eeprom good.txt --to-raw good.raw").exitCode, 0);
    std::string sealed = ReadText(file("bad.raw"));
    sealed[0x764] = 4;
    sealed[0xED8] = 1;
    EXPECT_EQ(ReadText(file("good.raw")), sealed);
    EXPECT_EQ(ReadText(file("front")), FrontDump()) << "changed in place";
    const Result several = zvcam("eeprom none good.raw bad.raw");
    EXPECT_EQ(several.exitCode, 2);
    EXPECT_THAT(several.out, AllOf(StartsWith("good.raw: 16384 bytes, good\n"),
                                   HasSubstr("\n\nbad.raw: 16384 bytes, BAD\n")));
    // The same image by another layout.
    const Result given = zvcam("eeprom good.raw --layout halcyrion_ofilm_uw_ov13b_eeprom");
    EXPECT_EQ(given.exitCode, 0);
    EXPECT_THAT(given.out, AllOf(HasSubstr("  warning  the header id is not the layout's\n"),
                                 HasSubstr("ov13b_eeprom, back ultra, as given\n"),
                                 HasSubstr("QR code    none of this maker\n")));
}

TEST_F(Zvcam, EepromEndsWithOneLineOnWhatCannotBeUsed) {
    std::string missing = FrontDump();
    missing.erase(16 * 14, 14);
    write("front", FrontDump());
    write("missing", missing);
    write("empty", "");
    write("large", std::string(16385, '\xFF'));
    write("kept", "kept");
    std::filesystem::resize_file(file("kept"), 0);
    std::ofstream(file("huge")).close();
    std::filesystem::resize_file(file("huge"), 100'000'000);
    const std::string expected = ": expected an EEPROM image or its dump, got ";
    const std::pair<std::string, std::string> kCases[] = {
        {"none", "none" + expected + "nothing that can be read (No such file or directory)"},
        {"tmp", "tmp" + expected + "a folder"},
        {"empty", "empty" + expected + "an empty file"},
        {"huge", "huge" + expected + "more than 67108864 bytes"},
        {"large", "large: expected a file of at most 16384 bytes, or the text of a dump, got 16385 bytes"},
        {"missing",
         "missing: expected the dump of a whole EEPROM with offset 0x0010 in line 17 of the file, got "
         "offset 0x0011"},
        {"front --to-raw kept", "cannot write kept: it exists; --force replaces it"},
        {"front --to-raw ./front --force", "cannot write ./front: the run reads it"},
        {"front --to-raw x --to-text ./x", "cannot write ./x: another output goes there"},
        {"front front --to-raw x", "--to-raw and --to-text write one file's image, not several"},
        {"front --set 8=00 --seal --to-raw x",
         "front: its header id is of no layout to compute checksums by; --layout names one"},
    };
    for (const auto& [arguments, error] : kCases) {
        const Result result = zvcam("eeprom " + arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments;
        EXPECT_EQ(result.error, "zvcam: " + error + "\n");
        EXPECT_THAT(result.out, IsEmpty());
    }
    for (const char* change : {"5", "=00", "0x=00", "5=", "5=0", "-1=00", "0x3FFF=0000", "5=0g"}) {
        EXPECT_THAT(zvcam(std::string("eeprom front --to-raw x --set ") + change).error,
                    StartsWith("zvcam: --set: expected OFFSET=BYTES"));
    }
    EXPECT_FALSE(std::filesystem::exists(file("x")));
    EXPECT_EQ(zvcam("eeprom front --to-raw kept --force").exitCode, 1);
    EXPECT_EQ(std::filesystem::file_size(file("kept")), 16384U);
}

}  // namespace
