#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <random>
#include <regex>
#include <set>
#include <sstream>

#include <gmock/gmock.h>

#include "analysis/Devices.h"
#include "analysis/Effects.h"
#include "analysis/Steps.h"
#include "supervisor/BootPool.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"
#include "tables/PublishedTags.h"
#include "tests/support/CaughtCalls.h"
#include "virtualphone/PhoneFile.h"

// PLUGIN, LEAK_CHECKED_PLUGIN, PHONES and DOCS are paths; the build defines them.

namespace {

using analysis::Effect;
using virtualphone::Call;
using Names = std::set<std::string>;

constexpr const char* kWalk = "MetadataUpdate";
constexpr const char* kCalibrationStep = "MetedataUpdateCalibData";

/// A call of a boot, by kind and number.
using CallNumber = std::pair<Call, std::uint64_t>;

/// Where a call stands in a boot.
struct Place {
    std::string step;    ///< of the boot or, in the walk, of the device's updaters
    std::string device;  ///< in the walk; empty between its updaters
    std::string what;    ///< the property, or the name of the tag
};

std::string TagName(std::uint32_t tag) {
    const tables::PublishedTag* const row = tables::FindPublishedTag(tag);
    return row == nullptr ? "" : row->name;
}

/// The place of each call of a boot that has an event, and of each opening of a file.
class Places {
  public:
    explicit Places(const record::BootRecord& boot) {
        const analysis::Course course = analysis::CourseOf(boot);
        std::vector<Place> places(boot.events.size(), {.step = kWalk, .device = "", .what = ""});
        for (const analysis::Step& step : course.steps) {
            for (std::size_t i = step.first; i < step.end; ++i) {
                places[i].step = step.name;
                if (step.device) {
                    const analysis::DeviceUpdate& device = course.devices[*step.device];
                    places[i].device = analysis::DeviceNumber(device.logicalIndex, device.memberId);
                }
            }
        }
        for (std::size_t i = 0; i < boot.events.size(); ++i) {
            add(boot.events[i], std::move(places[i]));
        }
    }

    const std::map<Call, std::vector<Place>>& byCall() const { return mPlaces; }

    /// Where a call may stand: for the reading and writing of files, wherever one is opened.
    std::vector<Place> of(const CallNumber& call) const {
        const bool isTransfer = call.first == Call::FileRead || call.first == Call::FileWritten;
        const auto places = mPlaces.find(isTransfer ? Call::FileOpened : call.first);
        if (places == mPlaces.end() || (!isTransfer && call.second >= places->second.size())) {
            return {};
        }
        return isTransfer ? places->second : std::vector{places->second[call.second]};
    }

  private:
    void add(const record::Event& event, Place place) {
        std::visit(
            [&](const auto& of) {
                using Kind = std::remove_cvref_t<decltype(of)>;
                if constexpr (std::is_same_v<Kind, record::PropertyAsked>) {
                    take(Call::PropertyAsked, std::move(place));
                } else if constexpr (std::is_same_v<Kind, record::PropertySet>) {
                    place.what = of.name;
                    take(Call::PropertySet, std::move(place));
                } else if constexpr (std::is_same_v<Kind, record::EepromRead>) {
                    take(Call::EepromRead, std::move(place));
                } else if constexpr (std::is_same_v<Kind, record::AutofocusRead>) {
                    take(Call::AutofocusRead, std::move(place));
                } else if constexpr (std::is_same_v<Kind, record::TagStored>) {
                    place.what = TagName(of.tag);
                    take(Call::TagStored, std::move(place));
                } else if constexpr (std::is_same_v<Kind, record::Asked>) {
                    take(Call::Asked, std::move(place));
                } else if constexpr (std::is_same_v<Kind, record::PathOpened>) {
                    take(Call::FileOpened, std::move(place));
                }
            },
            event);
    }
    void take(Call call, Place place) { mPlaces[call].push_back(std::move(place)); }

    std::map<Call, std::vector<Place>> mPlaces;
};

/// The table of docs/reliability.md: for what fails, the operations and tags that it names as what may
/// change.
class Table {
  public:
    Table() {
        std::ifstream page(DOCS "/reliability.md");
        const std::regex row("\\| (.*) \\| (.*) \\|");
        for (std::string line; std::getline(page, line);) {
            std::smatch columns;
            if (std::regex_match(line, columns, row) && columns[1] != "a call that fails") {
                const Names names = NamesIn(columns[1]);
                EXPECT_LE(names.size(), 2U) << line;
                std::string key = columns[1].str().starts_with("in another")            ? "another updater"
                                  : columns[1].str().starts_with("opening")             ? "opening"
                                  : columns[1].str().starts_with("reading")             ? "transfer"
                                  : columns[1].str().starts_with("the update of a tag") ? "tag"
                                                                                        : "";
                for (const std::string& name : names) {
                    key = name == "property_set" && names.size() == 2 ? key : name;
                }
                EXPECT_TRUE(mRows.try_emplace(key, NamesIn(columns[2])).second) << line;
            }
        }
        EXPECT_TRUE(mRows.contains("property_set") && mRows.contains("tag") &&
                    mRows.contains("another updater"));
    }

    /// The row of what fails; null where none has that name.
    const Names* find(const std::string& name) const {
        const auto row = mRows.find(name);
        return row == mRows.end() ? nullptr : &row->second;
    }
    const std::map<std::string, Names>& rows() const { return mRows; }

  private:
    static Names NamesIn(const std::string& text) {
        Names names;
        const std::regex name("`([^`]*)`");
        for (auto found = std::sregex_iterator(text.begin(), text.end(), name);
             found != std::sregex_iterator(); ++found) {
            names.insert((*found)[1]);
        }
        return names;
    }

    std::map<std::string, Names> mRows;
};

/// The step that publishes what an effect changes.
std::string StepOf(const Effect& effect) {
    switch (effect.kind) {
        case Effect::Kind::Property: {
            const auto* const row = tables::FindPublishedProperty(effect.name);
            return row == nullptr ? "" : row->operation.step;
        }
        case Effect::Kind::File: {
            const auto* const row = tables::FindPublishedFile(effect.name);
            return row == nullptr ? "" : row->operation.step;
        }
        case Effect::Kind::Tag: {
            const auto* const row = tables::FindPublishedTag(effect.tag);
            return row == nullptr ? "" : row->operation.step;
        }
        case Effect::Kind::HandOver:
            return kCalibrationStep;
        default:
            return "";
    }
}

/// The row of the table that holds for a call that fails at a place, and what in it allows an effect; empty
/// where nothing does.
struct Verdict {
    std::string row;
    std::string allowedBy;
};

Verdict Judge(const Table& table, Call call, const Place& place, const Effect& effect) {
    const std::string step = StepOf(effect);
    const bool isDevices = effect.kind == Effect::Kind::Tag || effect.kind == Effect::Kind::Device;
    const std::string own = effect.kind == Effect::Kind::Tag ? TagName(effect.tag) : effect.name;
    const auto listed = [&](const std::string& row) -> std::string {
        const Names* const names = table.find(row);
        return names == nullptr ? "" : names->contains(step) ? step : names->contains(own) ? own : "";
    };
    if (call == Call::PropertySet) {
        const std::string row = table.find(place.what) != nullptr ? place.what : "property_set";
        return {row,
                effect.kind == Effect::Kind::Property && effect.name == place.what ? "itself" : listed(row)};
    }
    if (isDevices && !place.device.empty() && effect.name != place.device) {
        return {place.step, ""};
    }
    if (call == Call::TagStored) {
        const std::string row = table.find(place.what) != nullptr ? place.what : "tag";
        return {row, effect.kind == Effect::Kind::Tag && own == place.what ? "itself" : listed(row)};
    }
    if (place.step == kWalk && place.device.empty()) {
        return {kWalk, isDevices || effect.kind == Effect::Kind::HandOver ? "itself" : ""};
    }
    if (table.find(place.step) == nullptr) {
        return {"another updater", !place.device.empty() && step == place.step ? "itself" : ""};
    }
    return {place.step, listed(place.step)};
}

class FaultSweep : public testing::Test {
  protected:
    void SetUp() override {
        if (!CallsOfFilesCanBeCaught()) {
            GTEST_SKIP() << "this kernel does not hand calls to a process";
        }
        options.failing[Call::FileOpened];
        healthy = supervisor::Boot(phone, options);
    }

    /// The steps that left no trace, and how the boot ended if it did not return.
    static std::string EndingOf(const record::BootRecord& boot) {
        std::string ending = boot.ended->returned() ? "" : record::EndText(*boot.ended);
        Names steps;
        for (const analysis::Step& step : analysis::CourseOf(boot).steps) {
            steps.emplace(step.name);
        }
        for (const analysis::Operation& step : analysis::BootSteps()) {
            const bool maySayNothing = step.name == "SetSensorInfoProp" || step.name == "SetAFInfoProp";
            ending += steps.contains(std::string(step.name)) || maySayNothing
                          ? ""
                          : " without " + std::string(step.name);
        }
        return ending;
    }

    /// All calls of the healthy boot.
    std::vector<CallNumber> allCalls() const {
        std::vector<CallNumber> calls;
        const auto add = [&calls](Call call, std::uint64_t count) {
            for (std::uint64_t i = 0; i < count; ++i) {
                calls.emplace_back(call, i);
            }
        };
        const Places places(healthy);
        for (const auto& [call, found] : places.byCall()) {
            add(call, found.size());
        }
        EXPECT_EQ(healthy.fileCalls.value().opened, places.byCall().at(Call::FileOpened).size());
        add(Call::FileRead, healthy.fileCalls->read);
        add(Call::FileWritten, healthy.fileCalls->written);
        return calls;
    }

    /// Boots once for each set of calls with these failing, and judges each boot.
    /// @param used gets what has allowed an effect, by row.
    void sweep(const std::vector<std::vector<CallNumber>>& faults, std::map<std::string, Names>& used,
               const supervisor::BootOptions& how) const {
        const analysis::Reference reference(healthy);
        const Table table;
        const Places usual(healthy);
        supervisor::BootPool pool({.boot = how}, [&](const std::string& job, supervisor::Booter& booter) {
            const std::vector<CallNumber>& calls = faults[std::stoul(job)];
            virtualphone::FailingCalls failing;
            for (const auto& [call, number] : calls) {
                failing[call].insert(number);
            }
            const record::BootRecord boot = booter.boot(phone, failing);
            return verdictOn(boot, calls, usual, reference, table);
        });
        for (std::size_t i = 0; i < faults.size(); ++i) {
            pool.add(i, std::to_string(i));
        }
        std::size_t boots = 0;
        while (const std::optional<supervisor::PoolResult> result = pool.next()) {
            ++boots;
            EXPECT_EQ(result->error, "");
            std::istringstream lines(result->text);
            for (std::string line; std::getline(lines, line);) {
                const std::size_t tab = line.find('\t');
                if (tab == std::string::npos) {
                    ADD_FAILURE() << Described(faults[result->key]) << ": " << line;
                } else {
                    used[line.substr(0, tab)].insert(line.substr(tab + 1));
                }
            }
        }
        EXPECT_EQ(boots, faults.size());
    }

    const virtualphone::PhoneDescription phone = virtualphone::ReadPhoneFile(PHONES "/halcyrion.json");
    supervisor::BootOptions options{.library = PLUGIN, .describe = false};
    record::BootRecord healthy;

  private:
    /// A line for each thing that is wrong with a boot, and "ROW<tab>NAME" for each permission that it used.
    static std::string verdictOn(const record::BootRecord& boot, const std::vector<CallNumber>& calls,
                                 const Places& usual, const analysis::Reference& reference,
                                 const Table& table) {
        std::string verdict = EndingOf(boot);
        verdict += verdict.empty() ? "" : "\n";
        // A step that a failing call silences has no trace by which to tell it: the call stands where it
        // stood in the healthy boot. Behind another failing call it may be a different one.
        std::vector<Places> places = {usual};
        if (calls.size() > 1) {
            places.emplace_back(boot);
        }
        std::vector<std::pair<Call, Place>> failed;
        for (const CallNumber& call : calls) {
            for (const Places& each : places) {
                for (const Place& place : each.of(call)) {
                    failed.emplace_back(call.first, place);
                }
            }
        }
        for (const Effect& effect : reference.effectsIn(boot)) {
            if (effect.kind == Effect::Kind::Log) {
                continue;
            }
            bool allowed = false;
            for (const auto& [call, place] : failed) {
                const Verdict found = Judge(table, call, place, effect);
                allowed = allowed || !found.allowedBy.empty();
                verdict += found.allowedBy.empty() ? "" : found.row + "\t" + found.allowedBy + "\n";
            }
            verdict += allowed ? "" : "changes " + effect.name + " " + TagName(effect.tag) + "\n";
        }
        return verdict;
    }

    static std::string Described(const std::vector<CallNumber>& calls) {
        std::string text;
        for (const auto& [call, number] : calls) {
            text +=
                "call " + std::to_string(static_cast<int>(call)) + " number " + std::to_string(number) + " ";
        }
        return text;
    }
};

TEST_F(FaultSweep, EachCallAlone) {
    EXPECT_EQ(EndingOf(healthy), "");
    std::vector<std::vector<CallNumber>> ofFiles;
    std::vector<std::vector<CallNumber>> others;
    for (const CallNumber& call : allCalls()) {
        const bool isOfFiles =
            call.first == Call::FileOpened || call.first == Call::FileRead || call.first == Call::FileWritten;
        (isOfFiles ? ofFiles : others).push_back({call});
    }
    EXPECT_GT(ofFiles.size() + others.size(), 1500U);
    std::map<std::string, Names> used;
    sweep(ofFiles, used, options);
    // A look for leaks reads files itself, and none of its calls may be caught.
    sweep(others, used, {.library = LEAK_CHECKED_PLUGIN, .describe = false});
    const Table table;
    for (const auto& [row, names] : table.rows()) {
        for (const std::string& name : names) {
            EXPECT_TRUE(name == kWalk || used[row].contains(name))
                << "docs/reliability.md allows " << row << " to change " << name << ", and nothing does";
        }
    }
}

TEST_F(FaultSweep, Pairs) {
    const std::vector<CallNumber> calls = allCalls();
    std::mt19937 random(7);
    const auto draw = [&] { return calls[random() % calls.size()]; };
    std::vector<std::vector<CallNumber>> faults(calls.size());
    std::generate(faults.begin(), faults.end(), [&] { return std::vector{draw(), draw()}; });
    std::map<std::string, Names> used;
    sweep(faults, used, options);
}

}  // namespace
