#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <sstream>
#include <vector>

#include "tables/CameraModules.h"
#include "tables/CameraPairs.h"
#include "tables/EepromLayouts.h"
#include "tables/ModuleMakers.h"
#include "tables/Stabiliser.h"
#include "tests/zvcam/Zvcam.h"

namespace {

std::string Hex(std::uint32_t number, int digits = 4) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "0x%0*X", digits, number);
    return text.data();
}

std::string Hex(int number) {
    return Hex(static_cast<std::uint32_t>(number));
}

std::string Role(int role) {
    std::string name = tables::FindModuleRole(role)->name;
    std::replace(name.begin(), name.end(), '_', ' ');
    return name;
}

std::string Row(const std::vector<std::string>& cells) {
    std::string row = "|";
    for (const std::string& cell : cells) {
        row += " " + cell + " |";
    }
    return row + "\n";
}

/// The page's tables that say what the program's tables say, by their heading.
std::map<std::string, std::string> Tables() {
    std::map<std::string, std::string> rows;
    std::map<int, std::string> makers;
    for (const tables::ModuleMaker& maker : tables::kModuleMakers) {
        const std::string name = maker.name;
        makers[maker.makerId] = name.substr(name.find_first_not_of('_'));
        rows["| maker | name |"] +=
            Row({Hex(static_cast<std::uint32_t>(maker.makerId), 2), makers[maker.makerId]});
    }
    for (const auto& [role, fuseId] : tables::kFuseIds) {
        rows["| role | fuse id at | bytes | properties |"] +=
            Row({Role(role), Hex(fuseId.fuseIdOffset), std::to_string(fuseId.fuseIdLength),
                 "`" + std::string(fuseId.propName) + "`, `" + fuseId.propNameLong + "`"});
    }
    for (const auto& [role, maker, code] : tables::kQRCodes) {
        rows["| role | maker | flag at | QR code at | bytes |"] +=
            Row({Role(role), makers[maker], Hex(code.flagOffset), Hex(code.qrCodeOffset),
                 std::to_string(code.qrCodeLength)});
    }
    for (const EepromCheckSumDesc& layout : tables::kEepromLayouts) {
        for (const SubModuleCheckSumDesc& range : tables::RangesOf(layout)) {
            rows["| layout | header id | range | bytes | checksum at |"] += Row(
                {"`" + std::string(layout.eepromName) + "`", Hex(layout.expectHeaderId & 0xFFFFFF, 6),
                 range.name, Hex(range.startAddr) + " to " + Hex(range.endAddr), Hex(range.checkSumAddr)});
        }
    }
    for (const DualCameraCalDataInfo& pair : tables::kDualCameraPairs) {
        const auto* const file = std::find_if(
            tables::kRecalibrationFiles.begin(), tables::kRecalibrationFiles.end(),
            [path = std::string_view(pair.dumpPath)](const auto& row) { return row.dumpPath == path; });
        rows["| pair | file | without a fitting file |"] +=
            Row({Role(pair.masterCameraRole) + " and " + Role(pair.slaveCameraRole),
                 "`" + std::string(file->fileName) + "`", "`" + std::string(pair.goldenPath) + "`"});
    }
    constexpr std::array kNumbers = {"gain X",           "gain Y",        "third parameter",
                                     "fourth parameter", "sensitivity X", "sensitivity Y"};
    for (std::size_t i = 0; i < kNumbers.size(); ++i) {
        const tables::StabiliserField& field = tables::kStabiliserFields[i];
        rows["| number | offset | size |"] +=
            Row({kNumbers[i], Hex(field.offset), std::to_string(field.size)});
    }
    return rows;
}

/// What each command prints, standard error included, all in one shell and folder.
std::vector<std::string> Outputs(const std::vector<std::string>& commands,
                                 const std::filesystem::path& folder) {
    std::ofstream script(folder / "script");
    script << "cd '" << folder.string()
           << "' && ln -s '" PHONES "' phones && zvcam() { '" ZVCAM "' \"$@\"; }\nexec 2>&1\n";
    for (const std::string& command : commands) {
        script << command << "\nstatus=$?; printf '\\001'; (exit $status)\n";
    }
    script.close();
    std::system(
        ("sh '" + (folder / "script").string() + "' >'" + (folder / "outputs").string() + "'").c_str());
    std::istringstream all(ReadText(folder / "outputs"));
    std::vector<std::string> outputs;
    for (std::string output; std::getline(all, output, '\1');) {
        outputs.push_back(output);
    }
    return outputs;
}

TEST_F(Zvcam, FormatsPageShowsTheTablesAndWhatTheProgramPrints) {
    const std::string page = SOURCE "/docs/formats.md";
    const std::string text = ReadText(page);
    std::vector<std::string> lines;
    std::vector<std::string> commands;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
        if (line.starts_with("$ ")) {
            commands.push_back(line.substr(2));
        }
    }
    std::map<std::string, std::string> rows = Tables();
    const std::vector<std::string> outputs = Outputs(commands, file("tmp").parent_path());
    ASSERT_EQ(outputs.size(), commands.size());
    std::string renewed;
    std::size_t next = 0;
    bool inSample = false;
    bool inTable = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        inTable = inTable && lines[i].starts_with('|');
        if (lines[i].starts_with("```")) {
            inSample = lines[i] == "```sh";
        }
        if (lines[i].starts_with("$ ")) {
            renewed += lines[i] + "\n" + outputs[next++];
        } else if (const auto table = rows.extract(lines[i])) {
            renewed += lines[i] + "\n" + lines[i + 1] + "\n" + table.mapped();
            inTable = true;
        } else if (!inTable && (!inSample || lines[i] == "```sh")) {
            renewed += lines[i] + "\n";
        }
    }
    EXPECT_THAT(rows, testing::IsEmpty()) << "tables that the page does not have";
    if (std::getenv("ZELVAN_RENEW_GOLDEN") != nullptr) {
        std::ofstream(page) << renewed;
    }
    EXPECT_EQ(renewed, text) << "scripts/renew-golden writes the page anew.";
}

}  // namespace
