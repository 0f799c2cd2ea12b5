#include "tests/zvcam/Zvcam.h"

namespace {

using testing::EndsWith;
using testing::IsEmpty;

class PhoneCommand : public Zvcam {
  protected:
    /// Boots a phone that dumps its memories into the folder "device", beside its getprop output.
    void pull(const std::string& phone) const {
        const Result result = zvcam("getprop --set vendor.debug.camera.eeprom_dump=1 --root device " + phone);
        ASSERT_EQ(result.exitCode, 0) << result.error;
        write("device/getprop.txt", result.out);
    }

    /// What a command that fails says; nothing stands on standard output, and it made nothing.
    std::string refusal(const std::string& arguments) const {
        const Result result = zvcam(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.out, IsEmpty());
        for (const auto& entry : std::filesystem::directory_iterator(file(""))) {
            EXPECT_THAT(entry.path().filename().string(), testing::Not(testing::StartsWith("new.")));
        }
        return result.error;
    }

    void expectSameBoot(const std::string& left, const std::string& right) const {
        const Result result = zvcam("diff " + left + " " + right);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out + result.error, "");
    }
};

TEST_F(PhoneCommand, PulledPhoneBootsAsTheOneThatItCameFrom) {
    const std::string trouble = PHONES "/fieldtrouble.json";
    pull(trouble);
    write("device/getprop.txt", ReadText(file("device/getprop.txt")) + "[ro.long]: [" + std::string(92, 'x') +
                                    "]\r\n[ro.lines]: [one\ntwo]\n");
    const Result result = zvcam("phone from-device device -o new.json --like " + trouble);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.out, R"(Found
  data/vendor/camera/eeprom_raw_data_dump_back_main: back main, layout halcyrion_semco_wide_imx707_eeprom
  data/vendor/camera/eeprom_raw_data_dump_back_ultra: back ultra, layout halcyrion_ofilm_uw_ov13b_eeprom
  /vendor/etc/camera/com.zelvan.dcal.wt.golden: 4096 bytes
  /vendor/etc/camera/com.zelvan.dcal.wu.golden: 4096 bytes
  getprop.txt: 20 properties, 1 of them from before the boot
Left out
  /data/vendor/camera/com.zelvan.dcal.wt.data: the boot writes it anew
  /data/vendor/camera/com.zelvan.dcal.wu.data: the boot writes it anew
  ro.long: a value of 92 bytes, which only the phone itself can set
  vendor.debug.camera.eeprom_dump: it asked for the dumps
  17 properties that the boot sets anew
Assumed
  /mnt/vendor/persist/camera/: empty
  front main: its memory cannot be read, for there is no dump of it
  3 sensors with their ids, sizes and focus, 8 logical devices and the metadata of 1 provider: as in )" +
                              trouble + "\n");
    expectSameBoot(trouble, "new.json");
    EXPECT_EQ(zvcam("getprop new.json ro.lines").out, "one\\x0Atwo\n");
}

TEST_F(PhoneCommand, PulledPhoneIsOtherwiseTheOneToStartFrom) {
    const std::string halcyrion = PHONES "/halcyrion.json";
    pull(halcyrion);
    // What adb pull leaves: the partition without its mount point, and the folders under one of the day.
    std::filesystem::create_directories(file("pulled/monday/persist"));
    for (const auto& [from, to] : std::map<std::string, std::string>{
             {"mnt/vendor/persist/camera", "persist/camera"}, {"vendor", "vendor"}, {"data", "data"}}) {
        std::filesystem::rename(file("device/" + from), file("pulled/monday/" + to));
    }
    EXPECT_EQ(zvcam("phone from-device pulled -o new.json").error, "");
    expectSameBoot(halcyrion, "new.json");
    // Twice in the folder: the first counts. A fitted module is missing on this device.
    write("pulled/getprop", "[persist.vendor.camera.zv.module.info]: [back_main=imx707;back_tele=none;]\n");
    write("pulled/zebra/eeprom_raw_data_dump_back_main.txt", "");
    std::filesystem::create_directories(file("pulled/zebra/data/vendor/camera"));
    write("pulled/zebra/data/vendor/camera/eeprom_raw_data_dump_back_main", "cut");
    std::filesystem::remove(file("pulled/monday/data/vendor/camera/eeprom_raw_data_dump_back_tele"));
    const std::string before = ReadText(file("new.json"));
    EXPECT_EQ(zvcam("phone from-device pulled -o new.json").error,
              "zvcam: cannot write new.json: it exists; --force replaces it\n");
    std::filesystem::remove(file("new.json"));
    EXPECT_EQ(zvcam("phone from-device pulled -o new.json").error,
              "zvcam: cannot write new.files: it exists; --force replaces it\n");
    // Where the phone file cannot be written, the former side files come back.
    std::filesystem::create_symlink("/dev/full", file("new.json"));
    write("new.files/mine", "mine");
    EXPECT_EQ(zvcam("phone from-device pulled -o new.json --force").error,
              "zvcam: cannot write new.json: No space left on device\n");
    EXPECT_EQ(ReadText(file("new.files/mine")), "mine");
    std::filesystem::remove(file("new.json"));
    const Result forced = zvcam("phone from-device pulled -o new.json --force");
    EXPECT_EQ(forced.error, "");
    EXPECT_THAT(forced.out,
                testing::HasSubstr("\n  zebra/data/vendor/camera/eeprom_raw_data_dump_back_main: an "
                                   "earlier file is the same one of the phone\n"));
    EXPECT_THAT(forced.out,
                testing::HasSubstr("\n  back tele: its memory cannot be read, for there is no dump of it\n"
                                   "  back tele: fitted, as in `zvcam phone new`, while getprop says that it "
                                   "is not\n"));
    EXPECT_FALSE(std::filesystem::exists(file("new.files/mine")));
    EXPECT_NE(ReadText(file("new.json")), before);
    // Its own side files are what a device might have had.
    EXPECT_EQ(zvcam("phone from-device new.files -o new.json --force").error,
              "zvcam: cannot write new.files: the run reads what lies there\n");
}

TEST_F(PhoneCommand, DamagedPullIsOneLine) {
    std::filesystem::create_directory(file("device"));
    const std::string dump = "device/eeprom_raw_data_dump_back_main";
    const std::string command = "phone from-device device -o new.json";
    EXPECT_EQ(refusal(command),
              "zvcam: device: there is no EEPROM dump, no camera folder and no getprop output in it\n");
    write(dump, "");
    const std::string lead = "zvcam: device: eeprom_raw_data_dump_back_main: expected ";
    EXPECT_EQ(refusal(command), lead + "the text of a dump, or 16384 bytes, got 0 bytes\n");
    write(dump, "0x0000 = 0x00\n0x0002 = 0x00\n");
    EXPECT_EQ(refusal(command), lead + "offset 0x0001 in line 2, got offset 0x0002\n");
    write(dump, "");
    std::filesystem::resize_file(file(dump), 100'000'000);
    EXPECT_EQ(refusal(command),
              "zvcam: " + dump + ": expected a file that can be read, got more than 67108864 bytes\n");
    EXPECT_EQ(refusal("phone from-device none -o new.json"),
              "zvcam: none: expected a folder that can be read, got No such file or directory\n");
    write(dump, std::string(16384, '\xFF'));
    EXPECT_EQ(refusal("phone from-device device -o none/new.json"),
              "zvcam: cannot write none/new.files: No such file or directory\n");
    EXPECT_EQ(refusal("phone from-device device --force -o " + dump),
              "zvcam: cannot write " + dump + ": the run reads it\n");
}

TEST_F(PhoneCommand, CheckTellsWhatIsWrongWithoutABoot) {
    write("bad.json", R"({
      "name": "bad",
      "files": {
        "/data/vendor/camera/com.zelvan.dcal.wu.data": {},
        "/mnt/vendor/persist/camera/a.dcal.bin":
          { "dualcal": { "master": "0102030405060708090A0B0C", "slave": "AA", "block": { "fill": 1, "size": 419 } } },
        "/mnt/vendor/persist/camera/b.dcal.bin":
          { "dualcal": { "master": "0102030405060708090A0B0C", "block": { "fill": 1, "size": 2047 } } },
        "/mnt/vendor/persist/camera/c.dcal.bin": { "hex": "05 00" },
        "/mnt/vendor/persist/camera/com.zelvan.oiscal.w.bin": { "oiscal": { "fuseId": "AA" } },
        "/mnt/vendor/persist/camera/d.dcal.bin": { "fill": 0, "size": 423, "bytes": { "0": "00 00", "9": "01" } },
        "/mnt/vendor/persist/camera/note": { "text": "x" },
        "/vendor/etc/camera/com.zelvan.dcal.wt.golden": { "fill": 1, "size": 4095 }
      },
      "sensors": [
        { "deviceId": 7, "eeprom": { "bytes": { "1": "03", "8": "C28E3D04", "16": "0102030405060708090A0B0C",
                                               "41": "01", "1873": "01", "1928": "01", "6888": "01", "8431": "01" },
                                     "checksums": "halcyrion_semco_wide_imx707_eeprom", "breakChecksums": ["OIS"] } },
        { "eeprom": { "readReturns": 100 } },
        { "eeprom": { "bytes": { "1": "01", "8": "FDFFFFFF", "1873": "01", "1928": "01" },
                      "checksums": "halcyrion_ofilm_uw_ov13b_eeprom" } },
        { "deviceId": 99 }
      ],
      "logicalDevices": [{ "name": "X", "sensorIds": [0, 4] }, {}],
      "faults": { "sensorDrivers": [3, 4], "staticInfo": [99, 5], "metadataUpdate": { "0x91010021": 1, "0x1": 1 },
                  "propertySet": ["vendor.camera.sensor.w.fuseID", "other"] }
    })");
    const Result result = zvcam("phone check bad.json phone.json none.json");
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.error,
              "zvcam: none.json: expected a phone file, got nothing that can be read (No such file or "
              "directory)\n");
    EXPECT_EQ(result.out, R"(bad.json: phone bad, 4 sensors, 2 devices, 8 files, 18 findings
  error  back main: OIS is broken: bytes 0x20EF to 0x2138 sum to 0x2, stored at 0x2139 is 0x3
  error  front main: its memory cannot be read (100 of 16384 bytes come back)
  error  back tele: its memory is laid out for another module: halcyrion_ofilm_uw_ov13b_eeprom on ov50d
  error  /mnt/vendor/persist/camera/a.dcal.bin: it was made for back main and no module that is found, which are no pair; the search for fuse ids ends at front main, which publishes none
  error  /mnt/vendor/persist/camera/b.dcal.bin: it is refused: no dual-camera file (2047 bytes follow the fuse ids, and no block has so many) and no stabiliser file (CRC 0x0101 stored, 0xA083 computed)
  error  /mnt/vendor/persist/camera/c.dcal.bin: it is refused: no dual-camera file (its fuse ids would lead beyond its end) and no stabiliser file (CRC 0x0500 stored, 0x0000 computed)
  error  /mnt/vendor/persist/camera/com.zelvan.oiscal.w.bin: it is refused: its gains are not 4000 to 17000
  error  /mnt/vendor/persist/camera/com.zelvan.oiscal.w.bin: it was made for no module that is found, not for back main
  error  /mnt/vendor/persist/camera/d.dcal.bin: it is refused: CRC 0x0000 stored, 0x64B7 computed
  error  /mnt/vendor/persist/camera/d.dcal.bin: it was made for nobody and nobody, which are no pair
  error  /vendor/etc/camera/com.zelvan.dcal.wt.golden: it has 4095 bytes, 4096 are needed
  warning  sensor 3: its device id 99 is that of no module, or of an earlier sensor: nothing is published of it
  warning  /data/vendor/camera/com.zelvan.dcal.wu.data: left from an earlier boot: where a boot does not write it, it serves
  warning  device 0: its member 4 is no sensor
  warning  faults: sensorDrivers: 4 can never strike, for there is no such sensor
  warning  faults: staticInfo: 5 can never strike, for no sensor has that device id
  warning  faults: metadataUpdate: 0x1 can never strike, for the tag is never published
  warning  faults: propertySet: other can never strike, for the property is never set
  sensor 0  back main   imx707  halcyrion_semco_wide_imx707_eeprom  BAD OIS         fuse id 0102030405060708090A0B0C
  sensor 1  front main  imx596  memory cannot be read
  sensor 2  back tele   ov50d   halcyrion_ofilm_uw_ov13b_eeprom     checksums good  fuse id 00000000000000000000000000000000
  sensor 3  no module   -
  device 0  X  back main, no sensor 4
  device 1     no members
  /data/vendor/camera/com.zelvan.dcal.wu.data: 0 bytes
  /mnt/vendor/persist/camera/a.dcal.bin: dual-camera calibration of back main and no module that is found, 419 bytes
  /mnt/vendor/persist/camera/b.dcal.bin: 2061 bytes
  /mnt/vendor/persist/camera/c.dcal.bin: 2 bytes
  /mnt/vendor/persist/camera/com.zelvan.oiscal.w.bin: stabiliser calibration of no module that is found, gains 0 and 0
  /mnt/vendor/persist/camera/d.dcal.bin: dual-camera calibration of nobody and nobody, 419 bytes
  /mnt/vendor/persist/camera/note: 1 byte
  /vendor/etc/camera/com.zelvan.dcal.wt.golden: golden block of wide and tele, 4095 bytes
phone.json: phone small, 0 sensors, 0 devices, 0 files, 1 finding
  warning  faults: propertySet: refused can never strike, for the property is never set
)");
    EXPECT_EQ(zvcam("phone check bad.json").exitCode, 1);
    EXPECT_EQ(zvcam("phone check phone.json").exitCode, 0);
}

TEST_F(PhoneCommand, NewPhoneFileIsGoodAndKept) {
    EXPECT_EQ(zvcam("phone new -o phone.json").error,
              "zvcam: cannot write phone.json: it exists; --force replaces it\n");
    EXPECT_EQ(zvcam("phone new --force -o phone.json").error, "");
    EXPECT_EQ(zvcam("phone new").out, ReadText(file("phone.json")));
    const Result check = zvcam("phone check phone.json");
    EXPECT_EQ(check.exitCode, 0);
    EXPECT_THAT(check.out, testing::HasSubstr("nothing wrong\n"));
    expectSameBoot("phone.json", PHONES "/halcyrion.json");
}

}  // namespace
