#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include <nlohmann/json.hpp>

#include "tables/CameraModules.h"
#include "tables/EepromLayouts.h"
#include "tables/Stabiliser.h"
#include "tests/zvcam/Zvcam.h"
#include "zvcam/views/InfluencePage.h"
#include "zvcam/views/InfluenceView.h"

namespace {

using nlohmann::json;

/// A field that docs/formats.md has for a module of the sample phone, and something that it decides.
struct Field {
    std::string module;
    int first;
    int count;
    std::string decides;
};

std::string RoleName(int role) {
    std::string name = tables::FindModuleRole(role)->name;
    std::replace(name.begin(), name.end(), '_', ' ');
    return name;
}

/// The page's tables are those of the program, which another test holds against each other.
std::vector<Field> DocumentedFields() {
    std::vector<Field> fields;
    for (const auto& [role, fuseId] : tables::kFuseIds) {
        const std::string module = RoleName(role);
        const std::string info = tables::FindModuleRole(role)->sensorInfoProperty;
        for (const char* const property : {fuseId.propName, fuseId.propNameLong}) {
            fields.push_back({module, tables::kVendorIdOffset, 1, property});
            fields.push_back({module, fuseId.fuseIdOffset, fuseId.fuseIdLength, property});
        }
        for (const int offset : {tables::kVendorIdOffset, tables::kLensIdOffset, tables::kSensorIdOffset}) {
            fields.push_back({module, offset, 1, info});
        }
    }
    for (const auto& [role, maker, code] : tables::kQRCodes) {
        const auto* const fuseId =
            std::find_if(tables::kFuseIds.begin(), tables::kFuseIds.end(),
                         [role = role](const auto& row) { return row.roleId == role; });
        fields.push_back({RoleName(role), code.flagOffset, 1, fuseId->fuseId.propName});
        fields.push_back({RoleName(role), code.qrCodeOffset, code.qrCodeLength, fuseId->fuseId.propName});
    }
    constexpr std::array kModules = {"back main", "back tele", "front main", "back ultra"};  // of the layouts
    for (std::size_t i = 0; i < kModules.size(); ++i) {
        for (const SubModuleCheckSumDesc& range : tables::RangesOf(tables::kEepromLayouts[i])) {
            fields.push_back({kModules[i], static_cast<int>(range.startAddr),
                              static_cast<int>(range.endAddr - range.startAddr + 1),
                              "ZELVAN_CAMERA_CHECKSUM_RESULT"});
            fields.push_back(
                {kModules[i], static_cast<int>(range.checkSumAddr), 1, "ZELVAN_CAMERA_CHECKSUM_RESULT"});
        }
    }
    for (const tables::StabiliserField& field : tables::kStabiliserFields) {
        fields.push_back({"back main", field.offset, field.size,
                          field.isSensitivity ? "persist.vendor.camera.oisSensitivity"
                                              : "persist.vendor.camera.oisAlgoParam"});
    }
    return fields;
}

/// What a range reaches of the published, by name.
std::set<std::string> Reached(const json& range) {
    std::set<std::string> names;
    for (const json& effect : range.at("reaches")) {
        for (const char* const key : {"property", "file", "name"}) {
            if (effect.contains(key)) {
                names.insert(effect.at(key));
            }
        }
    }
    return names;
}

/// A phone file as the program describes it, parts of it changed.
json SamplePhone(const std::string& report) {
    return json::parse(report).at("description");
}

/// Of a module, by its name with "_": a test each, which run beside each other.
class InfluenceOf : public Zvcam, public testing::WithParamInterface<const char*> {};

TEST_P(InfluenceOf, IsWhereFormatsAreDocumentedAndNowhereElse) {
    json phone = SamplePhone(zvcam("run '" PHONES "/halcyrion.json' --json -").out);
    // Without them it is the modules that decide.
    phone.erase("files");
    write("halcyrion.json", phone.dump());
    const Result result =
        zvcam("influence halcyrion.json --step 64 --json - --module " + std::string(GetParam()));
    ASSERT_EQ(result.exitCode, 0) << result.error;
    const json influence = json::parse(result.out);
    EXPECT_TRUE(influence.at("complete"));
    ASSERT_EQ(influence.at("inputs").size(), 1U);
    std::string module = GetParam();
    std::replace(module.begin(), module.end(), '_', ' ');
    EXPECT_EQ(influence.at("inputs").at(0).at("module"), module);
    std::vector<Field> fields = DocumentedFields();
    std::erase_if(fields, [&](const Field& field) { return field.module != module; });
    EXPECT_GT(fields.size(), 5U);
    int end = 0;
    for (const json& range : influence.at("inputs").at(0).at("ranges")) {
        EXPECT_EQ(range.at("first"), end);
        end += range.at("count").get<int>();
        const std::set<std::string> reached = Reached(range);
        for (int offset = range.at("first"); offset < end; ++offset) {
            bool documented = false;
            for (const Field& field : fields) {
                if (offset >= field.first && offset < field.first + field.count) {
                    documented = true;
                    EXPECT_TRUE(reached.contains(field.decides)) << offset << ' ' << field.decides;
                }
            }
            EXPECT_EQ(!reached.empty(), documented) << offset;
        }
    }
    EXPECT_EQ(end, 16384);
}
INSTANTIATE_TEST_SUITE_P(Modules, InfluenceOf,
                         testing::Values("back_main", "front_main", "back_tele", "back_ultra"),
                         [](const auto& test) { return std::string(test.param); });

TEST_F(Zvcam, InfluenceOfFilesPropertiesAndFlags) {
    json phone = SamplePhone(zvcam("run '" PHONES "/halcyrion.json' --json -").out);
    const std::string path = "/mnt/vendor/persist/camera/com.zelvan.oiscal.w.bin";
    const json bytes = phone["files"][path];
    phone["files"] = {{path, bytes}, {"/empty", {{"hex", ""}}}};
    phone["properties"] = {{"ro.boot.product.theme_customize", "NoTesmor"}, {"idle", "1"}};
    const json sensor = phone["sensors"][0];
    phone["sensors"] = json::array({sensor});
    phone["sensors"][0]["eeprom"] = {
        {"fill", 0}, {"bytes", {{"1", "03"}, {"16", "0102030405060708090A0B0C"}, {"16355", "41"}}}};
    write("halcyrion.json", phone.dump());
    const json influence = json::parse(zvcam("influence halcyrion.json --json -").out);
    std::map<std::string, std::set<std::string>> reached;
    for (const json& input : influence.at("inputs")) {
        if (input.contains("property") || input.contains("file")) {
            const std::string name = input.value("property", input.value("file", ""));
            reached[name] = input.contains("without") ? Reached({{"reaches", input.at("without")}})
                                                      : std::set<std::string>();
        }
        for (const json& range : input.value("module", "") == "back main" ? input.at("ranges") : json()) {
            // A flag that is not set: no value but 1 shows what it does.
            if (range.at("first") == 16354) {
                reached["flag"] = Reached(range);
            }
        }
    }
    using testing::Contains;
    EXPECT_THAT(reached.at("vendor.debug.camera.eeprom_dump"),
                Contains("/data/vendor/camera/eeprom_raw_data_dump_back_main"));
    EXPECT_THAT(reached.at("ro.boot.product.theme_customize"), testing::Not(testing::IsEmpty()));
    EXPECT_THAT(reached.at("idle"), testing::IsEmpty());
    EXPECT_THAT(reached.at("/empty"), testing::IsEmpty());
    EXPECT_THAT(reached.at(path), Contains("persist.vendor.camera.zv.oiscal.state"));
    EXPECT_THAT(reached.at("flag"), Contains("vendor.camera.sensor.w.fuseID"));
}

TEST_F(Zvcam, InfluenceThatIsStoppedTellsWhatIsKnown) {
    const std::string search =
        program() + "influence '" PHONES "/halcyrion.json' --step 1 --json stopped >out 2>&1 & ";
    // A slow machine is still at the boot that all others are compared with.
    for (const char* const wait : {"sleep 2", "sleep 10", "sleep 40"}) {
        EXPECT_EQ(StatusOf(search + wait + "; kill -TERM $!; wait $!"), 128 + SIGTERM);
        if (std::filesystem::exists(file("stopped"))) {
            break;
        }
    }
    const json influence = json::parse(ReadText(file("stopped")));
    EXPECT_FALSE(influence.at("complete"));
    const json& inputs = influence.at("inputs");
    EXPECT_TRUE(std::any_of(inputs.begin(), inputs.end(), [](const json& input) {
        const json& ranges = input.at("ranges");
        return std::any_of(ranges.begin(), ranges.end(),
                           [](const json& range) { return !range.at("known").get<bool>(); });
    }));
    EXPECT_THAT(ReadText(file("out")), testing::HasSubstr("INCOMPLETE: the search was stopped"));
    EXPECT_THAT(ReadText(file("out")), testing::HasSubstr("  not found out:"));
}

/// Bytes that were not looked at count as no bytes that reach something, and a mark is explained where it is.
TEST(InfluenceView, CountsWhatIsKnownAndExplainsItsMark) {
    analysis::Influence influence;
    influence.phone = "small";
    influence.step = 8;
    const std::size_t some = influence.sets.numberOf({{analysis::Effect::Kind::Property, "made"}});
    influence.inputs.push_back({.input = {.name = "back main", .size = 32},
                                .ranges = {{.bytes = {0, 4}, .effects = some, .tried = 1},
                                           {.bytes = {4, 12}, .effects = 0, .tried = 8, .open = true},
                                           {.bytes = {16, 16}, .effects = 0, .tried = 16}},
                                .without = {}});
    const auto text = [&] {
        std::ostringstream out;
        zvcam::PrintInfluence(out, influence, zvcam::Style{.colour = false});
        return out.str();
    };
    const std::string note =
        "What reaches nothing was changed in larger stretches, all else byte by byte; --step 1 changes each "
        "byte by itself.\n";
    EXPECT_THAT(text(), testing::HasSubstr("\nback main: 4 of 32 bytes reach what is published\n"));
    EXPECT_THAT(text(), testing::EndsWith("\n\n" + note));
    influence.inputs[0].ranges[1] = {.bytes = {4, 12}, .effects = some, .tried = 8, .open = false};
    EXPECT_THAT(text(), testing::HasSubstr("\nback main: 16 of 32 bytes reach what is published\n"));
    EXPECT_THAT(text(),
                testing::EndsWith("\n\n* changed 8 bytes at a time, first and last bytes found one by "
                                  "one. " +
                                  note));
    std::ostringstream page;
    zvcam::WriteInfluencePage(page, influence);
    EXPECT_THAT(page.str(), testing::HasSubstr(">0x0000 to 0x000F*<"));
    EXPECT_THAT(page.str(), testing::HasSubstr("<p>* changed 8 bytes at a time, "));
}

TEST_F(Zvcam, InfluenceWritesAPage) {
    const Result result =
        zvcam("influence '" PHONES "/fieldtrouble.json' --module 'back ultra' --step 64 --html page");
    EXPECT_THAT(result.out, testing::HasSubstr("  0x0001 "));
    EXPECT_THAT(ReadText(file("page")), testing::HasSubstr("<title>0x0001: "));
    EXPECT_EQ(zvcam("influence '" PHONES "/fieldtrouble.json' --json page --html ./page").error,
              "zvcam: cannot write ./page: another output goes there\n");
    EXPECT_EQ(
        zvcam("influence '" PHONES "/fieldtrouble.json' --module front_main").error,
        "zvcam: --module: no module \"front_main\" has a memory that can be read; those that have one are "
        "back_main and back_ultra\n");
}

}  // namespace
