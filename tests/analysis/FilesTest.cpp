#include <random>

#include <gmock/gmock.h>

#include "analysis/Calibration.h"
#include "analysis/CalibrationFiles.h"
#include "analysis/EepromFindings.h"
#include "tests/analysis/Boots.h"

namespace {

using analysis::CalibrationContent;
using analysis::ContentOfCalibrationFile;
using analysis::FindingsOf;
using formats::Encode;

using Bytes = std::vector<std::uint8_t>;

/// "good" or the errors and warnings.
std::string Verdict(const analysis::EepromFindings& findings) {
    std::string text = findings.good() ? "good" : "bad";
    for (const analysis::Finding& finding : findings.findings) {
        text += "; " + finding.words.substr(0, finding.words.find(':'));
    }
    return text;
}

TEST(EepromFindings, SayWhatTheBootOfTheModulePublishes) {
    const analysis::Boot boot = BootOf(SamplePhone("halcyrion"));
    for (const virtualphone::SensorDescription& sensor : boot.phone->sensors) {
        const analysis::EepromFindings findings = FindingsOf(sensor.eeprom->image, nullptr);
        EXPECT_EQ(Verdict(findings), "good");
        EXPECT_GE(findings.published.size(), 3U);
        for (const auto& [name, value] : findings.published) {
            if (name == "persist.vendor.camera.oisAlgoParam") {
                EXPECT_EQ(value, "8500,8344,5,6");  // the boot has a stabiliser file
                continue;
            }
            const auto sets = record::EventsOf<record::PropertySet>(boot.record);
            EXPECT_TRUE(std::any_of(
                sets.begin(), sets.end(),
                [&, &n = name, &v = value](const auto* set) { return set->name == n && set->value == v; }))
                << name << " = " << value;
        }
    }
}

TEST(EepromFindings, NameWhatIsWrong) {
    Bytes image = SamplePhone("halcyrion").sensors[1].eeprom->image;
    const Bytes good = image;
    image[0x751] ^= 1;
    EXPECT_EQ(Verdict(FindingsOf(image, nullptr)), "bad");
    image = good;
    image[1] = 5;
    EXPECT_EQ(Verdict(FindingsOf(image, nullptr)), "bad; the maker is unknown");
    EXPECT_EQ(FindingsOf(image, nullptr).published.size(), 1U) << "a fuse id of nobody";
    image = good;
    image[8] = 0;
    EXPECT_EQ(Verdict(FindingsOf(image, nullptr)), "bad; the header id is of no layout");
    EXPECT_EQ(Verdict(FindingsOf(image, &tables::kEepromLayouts[2])),
              "good; the header id is not the layout's");
    std::fill(image.begin() + 0x788, image.begin() + 0xED8, std::uint8_t{0});
    image[0xED8] = 1;
    EXPECT_EQ(Verdict(FindingsOf(image, &tables::kEepromLayouts[2])),
              "good; the header id is not the layout's; LSC is empty");
    EXPECT_EQ(Verdict(FindingsOf(Bytes(16384, 0xFF), nullptr)),
              "bad; erased; the header id is of no layout; the maker is unknown");
}

const Bytes kWide = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
const Bytes kUltra = {0x31, 0x32, 0x33, 0x34, 0x35, 0x36, 0x37, 0x38,
                      0x39, 0x3A, 0x3B, 0x3C, 0x3D, 0x3E, 0x3F, 0x40};

/// What a file is taken for, each kind with the first word of what would have it refused: "dual(CRC)".
std::string Kinds(const Bytes& bytes) {
    const CalibrationContent content = ContentOfCalibrationFile(bytes);
    const auto word = [](const std::string& trouble) {
        return "(" + trouble.substr(0, trouble.find(' ')) + ")";
    };
    return (content.dual ? "dual" + word(content.dualTrouble()) : "") +
           (content.ois ? "ois" + word(content.oisTrouble()) : "") +
           (content.trouble.empty() ? "" : "neither");
}

TEST(CalibrationFiles, AreToldApartByTheirContent) {
    const formats::DualCalibrationFile dual{kWide, kUltra, Bytes(419, 7), true};
    formats::DualCalibrationFile factory = dual;
    factory.crc = false;
    const formats::OisCalibrationFile ois{.fuseId = kWide, .gainX = 9000, .gainY = 9000};
    formats::OisCalibrationFile other = ois;
    other.version = 2;
    Bytes badDual = Encode(dual);
    badDual.back() ^= 1;
    Bytes badOis = Encode(ois);
    badOis.back() ^= 1;
    Bytes openOis = Encode(ois);
    openOis.resize(openOis.size() - 2);
    // A master fuse id of one byte is the version 1 of the other kind, and the CRC closes both.
    const formats::DualCalibrationFile both{{12}, kWide, Bytes(2048, 7), true};
    formats::DualCalibrationFile onlyDual = both;
    onlyDual.crc = false;
    const struct {
        Bytes bytes;
        const char* kinds;
        std::optional<Bytes> sealed;
    } kCases[] = {
        {Encode(dual), "dual()", Encode(dual)},
        {Encode(factory), "dual()", Encode(dual)},
        {badDual, "dual(CRC)", Encode(dual)},
        {Encode(ois), "ois()", Encode(ois)},
        {openOis, "ois(it)", Encode(ois)},
        {badOis, "ois(CRC)", Encode(ois)},
        {Encode(other), "ois(version)", Encode(other)},
        {Encode(both), "dual()ois(its)", Encode(both)},
        {Encode(onlyDual), "dual()", Encode(both)},
        {{}, "neither", std::nullopt},
        {Bytes(100, 1), "neither", std::nullopt},
        {Bytes((16U << 20) + 1), "neither", std::nullopt},
    };
    for (const auto& [bytes, kinds, sealed] : kCases) {
        EXPECT_EQ(Kinds(bytes), kinds);
        EXPECT_EQ(analysis::Sealed(bytes), sealed) << kinds;
    }
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        Bytes bytes(random() % 600);
        std::generate(bytes.begin(), bytes.end(),
                      [&] { return static_cast<std::uint8_t>(random() % (1U << i % 9)); });
        if (const auto sealed = analysis::Sealed(bytes)) {
            EXPECT_EQ(analysis::Sealed(*sealed), sealed);
        }
        ContentOfCalibrationFile(bytes);
    }
}

TEST(CalibrationFiles, TheFirstThatFitsIsTakenAsThePlugInDoes) {
    const auto dual = [](Bytes master, Bytes slave) {
        return Encode(
            {.masterFuseId = std::move(master), .slaveFuseId = std::move(slave), .block = Bytes(419, 7)});
    };
    const Bytes ois = Encode(formats::OisCalibrationFile{.fuseId = kWide, .gainX = 9000, .gainY = 9000});
    for (const std::string name : {"halcyrion", "fieldtrouble"}) {
        for (const auto& file : {dual(kWide, kUltra), dual(kUltra, kWide), dual({}, kUltra), dual(kWide, {}),
                                 dual({}, {}), dual(kWide, kWide), ois}) {
            virtualphone::PhoneDescription phone = SamplePhone(name);
            phone.files = {{"/mnt/vendor/persist/camera/dcal.bin", file},
                           {"/mnt/vendor/persist/camera/com.zelvan.oiscal.w.bin", file}};
            const analysis::Boot boot = BootOf(std::move(phone));
            const analysis::FuseIdOwners owners = analysis::FuseIdOwnersOf(boot);
            analysis::CalibrationFolder folder;
            folder.considered = {{"dcal.bin", ContentOfCalibrationFile(file)}};
            folder.stabiliser = {"com.zelvan.oiscal.w.bin", ContentOfCalibrationFile(file)};
            for (const DualCameraCalDataInfo& pair : tables::kDualCameraPairs) {
                EXPECT_EQ(folder.takenFor(pair, owners) != nullptr, FileAtEnd(boot, pair.dumpPath) != nullptr)
                    << name << pair.dumpPath;
            }
            EXPECT_EQ(folder.stabiliserTaken(owners), analysis::StabiliserOf(boot)->fromFile) << name;
        }
    }
}

}  // namespace
