#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>

#include "analysis/FleetRows.h"
#include "analysis/LogWords.h"
#include "tests/analysis/Boots.h"

namespace {

using Lines = std::vector<std::string>;

std::string CellText(const analysis::FleetCell& cell) {
    if (const auto* const number = std::get_if<std::int64_t>(&cell)) {
        return std::to_string(*number);
    }
    const auto* const text = std::get_if<std::string>(&cell);
    return text == nullptr ? "-" : *text;
}

/// The rows of one table, a line each.
Lines RowsIn(const std::string& table, const std::vector<analysis::FleetRow>& rows) {
    Lines lines;
    for (const analysis::FleetRow& row : rows) {
        const analysis::FleetTable& of = analysis::FleetTables()[row.table];
        EXPECT_EQ(row.cells.size(), of.columns.size()) << of.name;
        if (of.name == table) {
            std::string line;
            for (std::size_t i = 0; i < row.cells.size(); ++i) {
                line += (i == 0 ? "" : "|") + CellText(row.cells[i]);
                // A cell is nothing or of its column's type.
                EXPECT_TRUE(row.cells[i].index() == 0 ||
                            (row.cells[i].index() == 1) ==
                                (of.columns[i].type == analysis::FleetColumn::Type::Number))
                    << of.name << "." << of.columns[i].name;
            }
            lines.push_back(line);
        }
    }
    return lines;
}

std::vector<analysis::FleetRow> RowsOfSample(const std::string& name) {
    analysis::Boot boot = BootOf(SamplePhone(name));
    boot.record.plugin->buildId = "b17d";
    return analysis::RowsOf({.path = name + ".json", .microseconds = 1500}, boot);
}

TEST(FleetRows, PhoneInTrouble) {
    const auto rows = RowsOfSample("fieldtrouble");
    EXPECT_EQ(
        RowsIn("phones", rows),
        Lines({"fieldtrouble.json|phone file|fieldtrouble|returned|-|-|b17d|14|17|1196|38|6|5|5|1500"}));
    EXPECT_EQ(
        RowsIn("modules", rows),
        Lines({"0|back main|imx707|good|16384|semco|3|halcyrion_semco_wide_imx707_eeprom|1|-|empty|empty|"
               "bad|empty|empty|0102030405060708090A0B0C|-|300:123,10:456,",
               "1|front main|imx596|failed|0|-|-|-|-|-|-|-|-|-|-|-|-|-",
               "20|back tele|-|-|-|-|-|-|-|-|-|-|-|-|-|-|-|-",
               "21|back ultra|ov13b10|good|16384|ofilm|7|halcyrion_ofilm_uw_ov13b_eeprom|1|-|-|empty|empty|-|"
               "-|3132333435363738393A3B3C3D3E3F40|-|-"}));
    EXPECT_EQ(RowsIn("pairs", rows),
              Lines({"wide and ultra|golden|/vendor/etc/camera/com.zelvan.dcal.wu.golden|-|0",
                     "wide and tele|golden|/vendor/etc/camera/com.zelvan.dcal.wt.golden|-|0"}));
    EXPECT_EQ(
        RowsIn("refusals", rows),
        Lines(
            {"wide and ultra|EEPROM|this pair's modules carry no block|this pair's modules carry no block|0",
             "wide and ultra|/mnt/vendor/persist/camera/|holds no calibration file|holds no calibration "
             "file|0",
             "wide and tele|EEPROM|this pair's modules carry no block|this pair's modules carry no block|0",
             "wide and tele|/mnt/vendor/persist/camera/|holds no calibration file|holds no calibration "
             "file|0"}));
    EXPECT_EQ(RowsIn("stabiliser", rows), Lines({"2|EEPROM|cannot be opened|0,0,0,0"}));
    EXPECT_EQ(RowsIn("findings", rows).size(), 10U);
    EXPECT_EQ(RowsIn("findings", rows).front(),
              "error|back main|LSC is broken: bytes 0x788 to 0xED7 sum to 0x9D, stored at 0xED8 is 0x1|"
              "LSC is broken: bytes # to # sum to #, stored at # is #");
    EXPECT_EQ(RowsIn("findings", rows).back(),
              "warning|stabiliser|its calibration file cannot be opened: the gains are those of the EEPROM|"
              "its calibration file cannot be opened: the gains are those of the EEPROM");
    EXPECT_EQ(RowsIn("error_lines", rows),
              Lines({"GetCamCalAllData|GetCamCalCalDataV2 get all data error : roleID = #|1|0",
                     "GetCamCalAllData|GetSensorIdxByRoleId(#) error!|1|0",
                     "GetCamCalAllData|GetSensorIdxByRoleId(#) error!|6|1",
                     "GetOisParamFromPersist|failed to open file "
                     "/mnt/vendor/persist/camera/com.zelvan.oiscal.w.bin|1|0",
                     "GetRoleIdBySensorIdx|find DeviceId2RoleId[#] error!|4|0",
                     "GetSensorIdxByRoleId|GetDevIdByRoleId(#) error!|1|0",
                     "MemCpyCamCalData|calAllData is NULL!|4|0",
                     "MetadataUpdateCalibrationToolTag|The logical device don't have # sensors|1|0",
                     "MetadataUpdateCheckSumResult|submodule(LSC) checksum fail !|1|0",
                     "MetadataUpdateFakeSatSizes|Cannot get halsensor|5|0",
                     "MetadataUpdateScaler|get sensor static info error : #!|5|0",
                     "MetadataUpdateSmartFOVZoomRatio|Cannot get halsensor|5|0",
                     "OverriderDualCamCalData|CameraRoleId # lost persist file|2|0",
                     "OverriderDualCamCalData|Fatal Error: calibration persist file lost!|1|0"}));
    EXPECT_EQ(RowsIn("properties", rows).size(), 17U);
    EXPECT_EQ(RowsIn("properties", rows).front(),
              "persist.vendor.camera.zv.module.info|back_main=imx707;back_tele=none;|1");
}

TEST(FleetRows, PhoneThatWasNotBooted) {
    const analysis::FleetEntry entry = {.path = "x", .pulledFolder = true};
    EXPECT_EQ(RowsIn("phones", {analysis::RowOfNotBooted(entry, analysis::NotBooted::Unread, "empty")}),
              Lines({"x|pulled folder|-|unread|empty|-|-|-|-|-|-|-|-|-|-"}));
    EXPECT_EQ(RowsIn("phones", {analysis::RowOfNotBooted(entry, analysis::NotBooted::Failed, "no room")}),
              Lines({"x|pulled folder|-|failed|no room|-|-|-|-|-|-|-|-|-|-"}));
}

TEST(FleetRows, BootThatDidNotReturn) {
    analysis::Boot boot;
    boot.record.phone = "early";
    boot.record.events = {record::LogLine{6, "CameraPlatformInfoZelvan", "(1)[SetFuseIdProp] no 7 of 0x1F"}};
    record::Ended& ended = boot.record.ended.emplace();
    ended.how = record::Ended::How::Signal;
    ended.signal = 11;
    ended.step = "SetFuseIdProp";
    const auto rows = analysis::RowsOf({.path = "e"}, boot);
    EXPECT_EQ(RowsIn("phones", rows), Lines({"e|phone file|early|signal|was ended by SIGSEGV in "
                                             "SetFuseIdProp|SetFuseIdProp|-|0|0|1|1|0|0|0|0"}));
    EXPECT_EQ(RowsIn("error_lines", rows), Lines({"SetFuseIdProp|no # of #|1|0"}));
    EXPECT_EQ(rows.size(), 2U);
}

TEST(FleetRows, NumbersAndIdsAreTakenOutOfTexts) {
    const std::vector<std::pair<std::string, std::string>> texts = {
        {"", ""},
        {"42", "#"},
        {"roleID(20) ==> sensorIdx(-1)", "roleID(#) ==> sensorIdx(#)"},
        {"tag:-1862205436 err:-5", "tag:# err:#"},
        {"bytes 0x788 to 0xED7", "bytes # to #"},
        {"1-2, a-1, x -1", "#-#, a-#, x #"},
        {"imx707 0x 0xG 12ab 2XBACK_BOKEH", "imx707 0x 0xG 12ab 2XBACK_BOKEH"},
        {"made for 0102030405060708090A0B0C, deadbeef, 1234abcd", "made for #, deadbeef, #"},
        {"30.0,123;v1", "#.#,#;v1"},
    };
    for (const auto& [text, kind] : texts) {
        EXPECT_EQ(analysis::WithoutNumbers(text), kind) << text;
    }
}

}  // namespace
