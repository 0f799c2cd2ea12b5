#include <algorithm>
#include <functional>
#include <vector>

#include <gmock/gmock.h>

#include "analysis/Diagnosis.h"
#include "formats/OisCalibrationFile.h"
#include "tables/CameraPairs.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedTags.h"
#include "tests/analysis/Boots.h"

namespace {

using virtualphone::PhoneDescription;
using Lines = std::vector<std::string>;
using Bytes = std::vector<std::uint8_t>;

const std::string kFolder = tables::kPersistFolder;
const std::string kWideUltraFile = kFolder + "com.zelvan.dcal.wu.bin";
const std::string kWideTeleFile = kFolder + "com.zelvan.dcal.wt.bin";

Bytes& Image(PhoneDescription& phone, std::size_t sensor) {
    return phone.sensors[sensor].eeprom->image;
}

void Put(Bytes& bytes, std::size_t at, const Bytes& what) {
    std::copy(what.begin(), what.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

/// Nothing supplies the block of wide and tele.
void LoseWideTele(PhoneDescription& phone) {
    phone.files.erase(kWideTeleFile);
    phone.files.erase(tables::kDualCameraPairs[1].goldenPath);
}

/// A block of this size in the file of wide and ultra.
void ShrinkBlock(PhoneDescription& phone, std::size_t size) {
    Bytes& file = phone.files[kWideUltraFile];
    const Bytes header(file.begin(), file.begin() + 30);
    file = header;
    file.resize(header.size() + size, 0x15);
}

struct Damage {
    const char* name;
    std::function<void(PhoneDescription&)> apply;
    Lines findings;
};

const std::vector<Damage>& Damages() {
    static const std::vector<Damage> kDamages = {
        {"none", [](PhoneDescription&) {}, {}},
        {"erased",
         [](PhoneDescription& phone) { Image(phone, 2).assign(16384, 0xFF); },
         {"E back tele: its memory is erased: every byte is 0xFF",
          "W wide and ultra: the golden block serves, no persist file does",
          "W wide and tele: the golden block serves, no persist file does"}},
        {"zeroed",
         [](PhoneDescription& phone) { Image(phone, 3).assign(16384, 0); },
         {"E back ultra: its memory is erased: every byte is 0x0",
          "W wide and ultra: the golden block serves, no persist file does"}},
        {"layout of another module",
         [](PhoneDescription& phone) {
             Put(Image(phone, 3), 8, {0x73, 0xFF, 0xFF, 0xFF});
         },
         {"E back ultra: its memory is laid out for another module: halcyrion_aac_front_imx596_eeprom on "
          "ov13b10"}},
        {"unknown layout",
         [](PhoneDescription& phone) {
             Put(Image(phone, 3), 8, {1, 2, 3, 4});
         },
         {"W back ultra: its memory has a layout that nobody knows: it passes unchecked"}},
        {"unknown maker",
         [](PhoneDescription& phone) { Put(Image(phone, 1), 1, {0x63}); },
         {"E front main: its memory names a maker that nobody knows (0x63): no fuse id is published",
          "W wide and tele: the golden block serves, no persist file does",
          "W wide and ultra: the golden block serves, no persist file does"}},
        {"broken range",
         [](PhoneDescription& phone) { Image(phone, 3)[1900 + 28] ^= 1; },
         {"E back ultra: LSC is broken: bytes 0x788 to 0xED7 sum to 0xA1, stored at 0xED8 is 0xA0"}},
        {"short read",
         [](PhoneDescription& phone) { phone.sensors[1].eeprom->readReturns = 100; },
         {"E front main: its memory cannot be read (100 of 16384 bytes came back)",
          "W wide and tele: the golden block serves, no persist file does",
          "W wide and ultra: the golden block serves, no persist file does"}},
        {"no block",
         LoseWideTele,
         {"E wide and tele: nothing supplies a calibration block",
          "E device 5: no ZELVAN_BOKEH_CALIBRATION_DATA: no dump file with the pair's block"}},
        {"a block of an earlier boot",
         [](PhoneDescription& phone) {
             LoseWideTele(phone);
             phone.files[tables::kDualCameraPairs[1].dumpPath] = Bytes(4096, 7);
         },
         {"E wide and tele: nothing supplies a calibration block",
          "W wide and tele: /data/vendor/camera/com.zelvan.dcal.wt.data is left from an earlier boot, and "
          "what it "
          "holds is published",
          "W wide and tele: ZELVAN_BOKEH_CALIBRATION_DATA is published for device 5 although nothing "
          "supplied a "
          "block"}},
        {"a longer dump of an earlier boot",
         [](PhoneDescription& phone) { phone.files[tables::kDualCameraPairs[0].dumpPath] = Bytes(5000, 7); },
         {"W wide and ultra: /data/vendor/camera/com.zelvan.dcal.wu.data is left from an earlier boot and "
          "keeps "
          "904 bytes behind the block"}},
        {"a short block",
         [](PhoneDescription& phone) { ShrinkBlock(phone, 419); },
         {"W wide and ultra: its block has 419 bytes of 4096, the rest is published as zeros"}},
        {"no module factory",
         [](PhoneDescription& phone) { phone.faults.moduleFactory = true; },
         {"E devices: none was updated: no logical device list"}},
        {"no device in the list",
         [](PhoneDescription& phone) { phone.logicalDevices.clear(); },
         {"E devices: none was updated: the logical device list has none"}},
        {"refusals",
         [](PhoneDescription& phone) {
             phone.faults.propertySet = {"persist.vendor.camera.oisHvXyMatch", "never"};
             phone.faults.metadataUpdate = {{ZELVAN_CAMERA_SAT_INFO_FLAGS, -3},
                                            {ZELVAN_SAT_CALIBRATION_DATA, -5}};
             phone.faults.sensorDrivers = {tables::SensorIndex{4}};
             phone.faults.sensorObjects = {tables::SensorIndex{1}};
             phone.faults.staticInfo = {tables::DeviceId{6}};
         },
         {"E persist.vendor.camera.oisHvXyMatch: the platform refused to set it",
          "E ZELVAN_SAT_CALIBRATION_DATA: the platform refused it (-5) once",
          "E device 1: no ZELVAN_CAMERA_INSENSOR_ZOOM_MODES: no sensor object",
          "E device 1: no ZELVAN_CAMERA_SMARTFOV_ZOOM_RATIO: no sensor object",
          "E device 4: no ZELVAN_SAT_CALIBRATION_DATA: the platform refused it (-5)", "idle sensorDrivers: 4",
          "idle staticInfo: 6", "idle metadataUpdate: 0x9101009C", "idle propertySet: never"}},
    };
    return kDamages;
}

std::string LineOf(const analysis::Finding& finding) {
    return (finding.severity == analysis::Finding::Severity::Error ? "E " : "W ") + finding.about + ": " +
           finding.words;
}

Lines FindingsOf(const analysis::Diagnosis& diagnosis) {
    Lines lines;
    for (const analysis::Finding& finding : diagnosis.findings) {
        lines.push_back(LineOf(finding));
    }
    for (const std::string& fault : diagnosis.idleFaults) {
        lines.push_back("idle " + fault);
    }
    return lines;
}

TEST(Diagnosis, EveryDamageIsFoundAndNothingElse) {
    for (const Damage& damage : Damages()) {
        PhoneDescription phone = SamplePhone("halcyrion");
        damage.apply(phone);
        EXPECT_THAT(FindingsOf(analysis::Diagnose(BootOf(std::move(phone)))),
                    testing::UnorderedElementsAreArray(damage.findings))
            << damage.name;
    }
}

TEST(Diagnosis, PhoneWithoutSensorListHasNoModules) {
    PhoneDescription phone = SamplePhone("halcyrion");
    phone.faults.sensorList = true;
    const analysis::Boot boot = BootOf(std::move(phone));
    EXPECT_THAT(
        FindingsOf(analysis::Diagnose(boot)),
        testing::IsSupersetOf({std::string("E modules: none was named: no sensor list"),
                               std::string("E devices 5 and 6: 3 tags of "
                                           "MetadataUpdateCalibrationToolTag fewer: no sensor list")}));
}

/// What a boot had not come to when it ended is no finding.
TEST(Diagnosis, BootThatEndedEarlyHasNoFindingThatTheWholeOneLacks) {
    for (const char* const name : {"halcyrion", "fieldtrouble"}) {
        const analysis::Boot whole = BootOf(SamplePhone(name));
        const Lines findings = FindingsOf(analysis::Diagnose(whole));
        constexpr std::size_t kStride = 7;
        for (std::size_t end = 0; end < whole.record.events.size(); end += kStride) {
            analysis::Boot cut = whole;
            cut.record.events.resize(end);
            cut.record.ended = record::Ended{.how = record::Ended::How::Timeout, .what = {}, .step = {}};
            for (const analysis::Finding& finding : analysis::Diagnose(cut).findings) {
                // Those of devices name more of them as the boot goes on.
                if (finding.about == "devices" || !finding.about.starts_with("device")) {
                    EXPECT_THAT(findings, testing::Contains(LineOf(finding)))
                        << name << " after event " << end;
                }
            }
        }
    }
}

TEST(Diagnosis, TellsWhyEachCandidateOfAPairWasPassedOver) {
    PhoneDescription phone = SamplePhone("halcyrion");
    const Bytes sound = phone.files[kWideUltraFile];
    const Bytes others = phone.files[kWideTeleFile];
    phone.files.erase(kWideUltraFile);
    phone.files.erase(kWideTeleFile);
    Bytes brokenCrc = sound;
    brokenCrc.back() ^= 1;
    Bytes stranger = sound;
    stranger[3] = 0xEE;
    stranger.resize(stranger.size() - 2);
    phone.files[kFolder + "dcal.1.bin"] = brokenCrc;
    phone.files[kFolder + "dcal.2.bin"] = {200, 1, 2};
    phone.files[kFolder + "dcal.3.bin"] = Bytes(sound.begin(), sound.begin() + 100);
    phone.files[kFolder + "dcal.4.bin"] = stranger;
    phone.files[kFolder + "dcal.5.bin"] = others;
    phone.files[tables::kDualCameraPairs[0].goldenPath].resize(100);
    const analysis::Boot boot = BootOf(std::move(phone));
    const analysis::Diagnosis diagnosis = analysis::Diagnose(boot);
    ASSERT_EQ(diagnosis.pairs.size(), 2U);
    const analysis::PairDecision& decision = diagnosis.pairs[0];
    EXPECT_EQ(decision.source, analysis::PairDecision::Source::None);
    Lines passed;
    for (const analysis::PassedOver& candidate : decision.passedOver) {
        passed.push_back(candidate.candidate.substr(candidate.candidate.rfind('/') + 1) + " " +
                         candidate.reason);
    }
    EXPECT_THAT(
        passed,
        testing::UnorderedElementsAre(
            "EEPROM this pair's modules carry no block",
            testing::MatchesRegex("dcal.1.bin CRC 0x.... stored, 0x.... computed"),
            "dcal.2.bin too short for the fuse ids that it announces",
            "dcal.3.bin of 100 bytes, which no block of 419, 2048 or 4096 bytes makes",
            "dcal.4.bin made for fuse id 0102EE0405060708090A0B0C (no module publishes it) and back ultra",
            "dcal.5.bin made for back main and back tele",
            "com.zelvan.dcal.wu.golden of 100 bytes, 4096 are needed"));
    EXPECT_EQ(diagnosis.pairs[1].source, analysis::PairDecision::Source::Persist);
    EXPECT_EQ(diagnosis.pairs[1].path, kFolder + "dcal.5.bin");
}

TEST(Diagnosis, TellsWhyTheStabiliserFileWasRefused) {
    const formats::OisCalibrationFile good{
        .version = 1, .fuseId = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, .gainX = 9000, .gainY = 9100};
    formats::OisCalibrationFile otherVersion = good;
    otherVersion.version = 2;
    formats::OisCalibrationFile otherModule = good;
    otherModule.fuseId = {0xAB};
    formats::OisCalibrationFile nobodys = good;
    nobodys.fuseId = {};
    formats::OisCalibrationFile wild = good;
    wild.gainY = 17001;
    Bytes brokenCrc = formats::Encode(good);
    brokenCrc.back() ^= 1;
    const std::vector<std::pair<std::optional<Bytes>, std::string>> cases = {
        {formats::Encode(good), ""},
        {std::nullopt, "cannot be opened"},
        {Bytes(), "is empty"},
        {brokenCrc, "CRC 0x[0-9a-f]* stored, 0x[0-9a-f]* computed"},
        {formats::Encode(otherVersion), "has another version"},
        {formats::Encode(otherModule), "is made for fuse id AB, 0102030405060708090A0B0C is fitted"},
        {formats::Encode(nobodys), "names no fuse id, 0102030405060708090A0B0C is fitted"},
        {formats::Encode(wild), "its gains are not 4000 to 17000"},
    };
    for (const auto& [file, reason] : cases) {
        PhoneDescription phone = SamplePhone("halcyrion");
        phone.files.erase(tables::kOisFilePath);
        if (file) {
            phone.files[tables::kOisFilePath] = *file;
        }
        const auto stabiliser = analysis::StabiliserOf(BootOf(std::move(phone)));
        ASSERT_TRUE(stabiliser);
        EXPECT_EQ(stabiliser->fromFile, reason.empty());
        EXPECT_THAT(stabiliser->reason, testing::MatchesRegex(reason));
    }
}

}  // namespace
