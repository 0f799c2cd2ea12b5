#include "analysis/Calibration.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "analysis/CalibrationFiles.h"
#include "analysis/LogWords.h"
#include "tables/CameraDevices.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"

namespace analysis {

namespace {

constexpr std::string_view kStep = "OverriderDualCamCalData";
constexpr std::string_view kParserTag = "CalibrationData";

std::string Strip(std::string_view text) {
    return std::string(text.substr(0, text.find_last_not_of(" \n") + 1));
}

/// What stands between two texts; empty where they do not.
std::string_view Between(std::string_view text, std::string_view before, std::string_view after) {
    const std::size_t start = text.find(before);
    if (start == std::string_view::npos) {
        return {};
    }
    text.remove_prefix(start + before.size());
    const std::size_t end = text.find(after);
    return end == std::string_view::npos ? std::string_view() : text.substr(0, end);
}

/// Why a calibration file was refused, of the line that its parser logged.
std::string RefusalInWords(std::string_view text) {
    if (text.starts_with("failed to open")) {
        return "cannot be opened";
    }
    if (text.starts_with("parse dual calibration file failed")) {
        return "too short for the fuse ids that it announces";
    }
    if (text.starts_with("mismatch crc")) {
        return "CRC " + std::string(Between(text, "(", ",")) + " stored, " +
               std::string(Between(text, ", ", ")")) + " computed";
    }
    if (const std::string_view size = Between(text, "fileSize(", ")"); !size.empty()) {
        return "of " + std::string(size) + " bytes, which no block of 419, 2048 or 4096 bytes makes";
    }
    return {};
}

/// Whose fuse id a calibration file carries.
struct Owner {
    std::string words;
    bool fitted = false;
};

Owner OwnerOf(const std::string& fuseId, const std::vector<Module>& modules) {
    if (fuseId.empty()) {
        return {.words = "nobody", .fitted = false};
    }
    const auto found = std::find_if(modules.begin(), modules.end(),
                                    [&](const Module& module) { return module.fuseId == fuseId; });
    return found == modules.end()
               ? Owner{.words = "fuse id " + fuseId + " (no module publishes it)", .fitted = false}
               : Owner{.words = found->name, .fitted = true};
}

/// Why a sound file was not taken for this pair.
PassedOver NotOfPair(const std::vector<std::string>& fuseIds, const DualCameraCalDataInfo& pair,
                     const std::vector<Module>& modules) {
    const Owner master = OwnerOf(fuseIds.empty() ? "" : fuseIds[0], modules);
    const Owner slave = OwnerOf(fuseIds.size() < 2 ? "" : fuseIds[1], modules);
    const std::array<std::string, 2> wanted = {RoleName(pair.masterCameraRole),
                                               RoleName(pair.slaveCameraRole)};
    const std::string words = "made for " + master.words + " and " + slave.words;
    const bool named = (master.words == wanted[0] && slave.words == wanted[1]) ||
                       (master.words == wanted[1] && slave.words == wanted[0]);
    if (!named) {
        return {.candidate = {}, .reason = words, .ofAnotherPair = master.fitted && slave.fitted};
    }
    // The search compares the fitted modules one by one and ends at the first that publishes no fuse id.
    const auto silent = std::find_if(modules.begin(), modules.end(), [](const Module& module) {
        return module.fitted() && module.fuseId.empty();
    });
    return {.candidate = {},
            .reason = words + (silent == modules.end() ? ", but not recognised"
                                                       : ", but the search ended at " + silent->name +
                                                             ", which publishes no fuse id")};
}

/// Follows the log of the step and collects one decision a pair.
class PairReader {
  public:
    PairReader(const Boot& boot, const std::vector<Module>& modules) : mBoot(boot), mModules(modules) {}

    void take(const record::Event& event) {
        if (const auto* const opened = std::get_if<record::PathOpened>(&event)) {
            // A candidate is opened first, and the dump file after it.
            mOpened = mOpened.empty() ? opened->path : mOpened;
        } else if (const auto* const line = std::get_if<record::LogLine>(&event)) {
            if (line->tag == kParserTag) {
                takeParserLine(line->message);
            } else {
                takeLine(record::OperationOf(*line), record::TextOf(*line), *line);
            }
        }
    }

    std::vector<PairDecision> decisions() && {
        // What a boot that ended early had not found yet may still have been there.
        if (mBoot.cutShort() && !mDecisions.empty() &&
            mDecisions.back().source == PairDecision::Source::None && !mGoldenTried) {
            mDecisions.pop_back();
        }
        return std::move(mDecisions);
    }

  private:
    void takeParserLine(std::string_view text) {
        if (std::string words = RefusalInWords(text); !words.empty()) {
            mRefusal = std::move(words);
        }
        if (const std::string_view size = Between(text, "data_byte=", ","); !size.empty()) {
            std::size_t bytes = 0;
            std::from_chars(size.data(), size.data() + size.size(), bytes);
            mBlockSize = bytes;
        }
        if (text.starts_with("fuse byte=")) {
            mFuseIds.push_back(Strip(text.substr(text.find("id=") + 3)));
        }
    }

    void takeLine(std::string_view operation, std::string_view text, const record::LogLine& line) {
        if (operation == "DualCameraDataFromEeprom" && text == "enter") {
            if (mDecisions.size() < tables::kDualCameraPairs.size()) {
                mDecisions.push_back({.pair = &tables::kDualCameraPairs[mDecisions.size()],
                                      .path = {},
                                      .blockSize = {},
                                      .passedOver = {}});
            }
            mRefusal = "its module cannot be read";
            mGoldenTried = false;
            return;
        }
        if (mDecisions.empty()) {
            return;
        }
        PairDecision& decision = mDecisions.back();
        if (operation == "DualCameraDataFromEeprom") {
            takeEepromLine(decision, text);
        } else if (operation == "DualCameraDataFromPersist") {
            takePersistLine(decision, text);
        } else if (operation == "MatchDualCameraPersistFile") {
            takeCandidateLine(decision, text);
        } else if (operation == "DualCameraDataFromGolden") {
            takeGoldenLine(decision, text);
        } else if (operation == "DualCameraDataDumpFile" && IsError(line)) {
            decision.dumpFailed = true;
        }
    }

    void takeEepromLine(PairDecision& decision, std::string_view text) {
        if (text.find("'s eeprom data dump") != std::string_view::npos) {
            decision.source = PairDecision::Source::Eeprom;
        } else if (text.find("offset < 0") != std::string_view::npos) {
            mRefusal = "this pair's modules carry no block";
        } else if (text == "CheckSum error") {
            mRefusal = "the block's checksum is bad";
        }
    }

    void takePersistLine(PairDecision& decision, std::string_view text) {
        if (text == "enter") {
            decision.passedOver.push_back(
                {.candidate = SourceName(CalibrationSource::Eeprom), .reason = mRefusal});
            mRefusal.clear();
        } else if (text.starts_with("no dual camera calibration data")) {
            decision.passedOver.push_back(
                {.candidate = tables::kPersistFolder, .reason = "holds no calibration file"});
        } else {
            closeCandidate(decision);
        }
        if (text.find("match persistFile is") != std::string_view::npos) {
            decision.source = PairDecision::Source::Persist;
            decision.blockSize = mBlockSize;
            decision.path = tables::kPersistFolder + Strip(text.substr(text.find(" is ") + 4));
        }
    }

    void takeCandidateLine(PairDecision& decision, std::string_view text) {
        if (text == "enter") {
            closeCandidate(decision);
            mCandidate = true;
            mOpened.clear();
            mRefusal.clear();
            mFuseIds.clear();
        } else if (text == "exit : ret = 0") {
            if (decision.dumpFailed) {
                mRefusal = "its block could not be dumped";
            }
            PassedOver passed = mRefusal.empty() ? NotOfPair(mFuseIds, *decision.pair, mModules)
                                                 : PassedOver{.candidate = {}, .reason = mRefusal};
            closeCandidate(decision, std::move(passed));
        } else if (text == "exit : ret = 1") {
            mCandidate = false;
        }
    }

    void closeCandidate(PairDecision& decision) {
        closeCandidate(decision, {.candidate = {}, .reason = mRefusal.empty() ? "refused" : mRefusal});
    }

    void closeCandidate(PairDecision& decision, PassedOver passed) {
        if (mCandidate) {
            passed.candidate = mOpened.empty() ? "a persist file" : mOpened;
            decision.passedOver.push_back(std::move(passed));
            mCandidate = false;
        }
    }

    void takeGoldenLine(PairDecision& decision, std::string_view text) {
        if (text.starts_with("use golden file")) {
            mGoldenRead = true;
            if (!decision.dumpFailed) {
                decision.source = PairDecision::Source::Golden;
                decision.path = decision.pair->goldenPath;
            }
        } else if (text == "enter") {
            mGoldenRead = false;
        } else if (text == "exit" && decision.source == PairDecision::Source::None) {
            mGoldenTried = true;
            decision.passedOver.push_back(
                {.candidate = decision.pair->goldenPath, .reason = goldenRefusal(decision)});
        }
    }

    std::string goldenRefusal(const PairDecision& decision) const {
        if (mGoldenRead) {
            return "its block could not be dumped";
        }
        const std::vector<std::uint8_t>* const bytes = FileAtEnd(mBoot, decision.pair->goldenPath);
        return bytes == nullptr ? "cannot be opened"
                                : "of " + std::to_string(bytes->size()) + " bytes, " +
                                      std::to_string(decision.pair->length) + " are needed";
    }

    const Boot& mBoot;
    const std::vector<Module>& mModules;
    std::vector<PairDecision> mDecisions;
    std::string mOpened;                ///< path of the file at hand
    std::string mRefusal;               ///< of the source or file at hand
    std::vector<std::string> mFuseIds;  ///< of the file at hand
    std::optional<std::size_t> mBlockSize;
    bool mCandidate = false;  ///< a file is at hand
    bool mGoldenRead = false;
    bool mGoldenTried = false;  ///< the last source of the pair at hand
};

}  // namespace

const char* SourceName(CalibrationSource source) {
    constexpr const char* kNames[] = {"", "EEPROM", "persist", "golden"};
    return kNames[static_cast<std::size_t>(source)];
}

std::vector<PairDecision> PairDecisionsOf(const Boot& boot, const Course& course,
                                          const std::vector<Module>& modules) {
    PairReader reader(boot, modules);
    for (const Step& step : course.steps) {
        for (std::size_t i = step.first; step.name == kStep && i < step.end; ++i) {
            reader.take(boot.record.events[i]);
        }
    }
    return std::move(reader).decisions();
}

const DualCameraCalDataInfo* PairOfRole(int role) {
    const auto roleOfChip = [](std::string_view chip) {
        const auto* const found =
            std::find_if(tables::kCameraDevices.begin(), tables::kCameraDevices.end(),
                         [=](const auto& row) { return row.camera.sensorNames == chip; });
        return found == tables::kCameraDevices.end() ? -1 : found->camera.roleId;
    };
    for (const tables::CameraDevice& device : tables::kCameraDevices) {
        const std::string_view chips = device.camera.sensorNames;
        const std::size_t split = chips.find(';');
        if (device.camera.roleId != role || split == std::string_view::npos) {
            continue;
        }
        const std::string_view rest = chips.substr(split + 1);
        const int first = roleOfChip(chips.substr(0, split));
        const int second = roleOfChip(rest.substr(0, rest.find(';')));
        for (const DualCameraCalDataInfo& pair : tables::kDualCameraPairs) {
            if ((pair.masterCameraRole == first && pair.slaveCameraRole == second) ||
                (pair.masterCameraRole == second && pair.slaveCameraRole == first)) {
                return &pair;
            }
        }
    }
    return nullptr;
}

std::string PairName(const DualCameraCalDataInfo& pair) {
    const auto shortName = [](int role) {
        const std::string name = RoleName(role);
        return name == "back main" ? "wide" : name.starts_with("back ") ? name.substr(5) : name;
    };
    return shortName(pair.masterCameraRole) + " and " + shortName(pair.slaveCameraRole);
}

std::optional<StabiliserDecision> StabiliserOf(const Boot& boot) {
    StabiliserDecision decision;
    bool decided = false;
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot.record)) {
        if (set->name == tables::kOisCalStateProperty) {
            decision.state = set->value;
            decided = true;
        } else if (set->name == tables::kOisAlgoParamProperty) {
            decision.parameters = set->value;
        }
    }
    if (!decided) {
        return std::nullopt;
    }
    decision.fromFile = decision.state == "0";
    for (const record::LogLine* const line : record::EventsOf<record::LogLine>(boot.record)) {
        if (record::OperationOf(*line) != "GetOisParamFromPersist") {
            continue;
        }
        const std::string_view text = record::TextOf(*line);
        if (text.starts_with("failed to open")) {
            decision.reason = "cannot be opened";
        } else if (text.ends_with("is empty")) {
            decision.reason = "is empty";
        } else if (text.find("crc is not match") != std::string_view::npos) {
            // "...: [0x40ef:0x4000]", the computed one first.
            decision.reason = "CRC 0x" + std::string(Between(text, ":0x", "]")) + " stored, " +
                              std::string(Between(text, "[", ":0x")) + " computed";
        } else if (text.ends_with("is an invalid file")) {
            decision.reason = "has another version";
        } else if (text.starts_with("OIS cali file fuseid not match")) {
            const std::string_view ids = text.substr(text.find(" : ") + 3);
            const std::string fitted(ids.substr(0, ids.find(':')));
            const std::string made(ids.substr(ids.find(':') + 1));
            decision.reason = (made.empty() ? "names no fuse id" : "is made for fuse id " + made) + ", " +
                              (fitted.empty() ? "the fitted module publishes none" : fitted + " is fitted");
        } else if (text.find("reasonable range") != std::string_view::npos) {
            decision.reason = GainsRefused();
        }
    }
    return decision;
}

const std::vector<std::uint8_t>* FileAtEnd(const Boot& boot, const std::string& path) {
    if (const record::ChangedFile* const written = record::FindWritten(boot.record, path)) {
        return &written->bytes;
    }
    if (!boot.phone) {
        return nullptr;
    }
    const auto laid = boot.phone->files.find(path);
    return laid == boot.phone->files.end() ? nullptr : &laid->second;
}

}  // namespace analysis
