#include "zvcam/views/InfluenceView.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <ostream>
#include <utility>

#include <nlohmann/json.hpp>

#include "formats/Hex.h"

namespace zvcam {

namespace {

using analysis::Effect;
using analysis::Effects;
using analysis::Influence;
using analysis::Input;
using analysis::InputInfluence;
using analysis::Range;
using Kind = Effect::Kind;

/// Columns of a line, and of what leads the effects of a range.
constexpr std::size_t kWidth = 118;
constexpr std::size_t kLead = 22;

/// How a range's effects are told.
enum class Reach { Published, LogAlone, Nothing };

Reach ReachOf(const Effects& effects) {
    return effects.empty() ? Reach::Nothing : ReachesPublished(effects) ? Reach::Published : Reach::LogAlone;
}

/// Prints items behind a lead, as many a line as fit.
void PrintItems(std::ostream& out, const std::string& lead, std::size_t indent,
                const std::vector<std::string>& items) {
    std::string line = lead;
    line.resize(std::max(lead.size() + 1, indent), ' ');
    bool first = true;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::string item = items[i] + (i + 1 < items.size() ? "," : "");
        if (!first && line.size() + 1 + item.size() > kWidth) {
            out << line << '\n';
            line.assign(indent, ' ');
            first = true;
        }
        line += (first ? "" : " ") + item;
        first = false;
    }
    out << line << '\n';
}

std::string Heading(const Influence& influence, const InputInfluence& of) {
    const Input& input = of.input;
    if (input.kind == Input::Kind::Property) {
        return "property " + Printable(input.name) + (input.set ? "" : " (not set)");
    }
    std::size_t reaching = 0;
    for (const Range& range : of.ranges) {
        const bool known = !range.open && ReachOf(influence.sets[range.effects]) == Reach::Published;
        reaching += known ? range.bytes.count : 0;
    }
    return (input.kind == Input::Kind::File ? "file " + Printable(input.name) : input.name) + ": " +
           std::to_string(reaching) + " of " + Counted(input.size, "byte") + " reach what is published";
}

bool ReachesSomething(const Influence& influence, const InputInfluence& of) {
    return (of.without && ReachesPublished(influence.sets[*of.without])) ||
           std::any_of(of.ranges.begin(), of.ranges.end(), [&](const Range& range) {
               return range.open || ReachesPublished(influence.sets[range.effects]);
           });
}

void PrintRanges(std::ostream& out, const Influence& influence, const InputInfluence& of) {
    std::vector<std::string> nothing;
    std::vector<std::string> open;
    /// What logs, and the ranges that make it do so.
    std::vector<std::pair<std::vector<std::string>, std::vector<std::string>>> logAlone;
    for (const Range& range : PublishedRanges(influence, of)) {
        const Effects& effects = influence.sets[range.effects];
        const std::string text = StretchText(range.bytes);
        if (range.open) {
            open.push_back(text);
        } else if (ReachOf(effects) == Reach::Nothing) {
            nothing.push_back(text);
        } else if (ReachOf(effects) == Reach::LogAlone) {
            std::vector<std::string> operations = EffectTexts(effects, true);
            auto known = std::find_if(logAlone.begin(), logAlone.end(),
                                      [&](const auto& entry) { return entry.first == operations; });
            if (known == logAlone.end()) {
                known = logAlone.emplace(known, std::move(operations), std::vector<std::string>());
            }
            known->second.push_back(RangeText(range));
        } else {
            PrintItems(out, "  " + RangeText(range), kLead, EffectTexts(effects, false));
        }
    }
    for (const auto& [operations, ranges] : logAlone) {
        PrintItems(out, "  the log alone:", kLead, ranges);
        PrintItems(out, "", kLead + 2, operations);
    }
    if (!nothing.empty()) {
        PrintItems(out, "  nothing:", kLead, nothing);
    }
    if (!open.empty()) {
        PrintItems(out, "  not found out:", kLead, open);
    }
}

nlohmann::ordered_json EffectsJson(const Effects& effects) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Effect& effect : effects) {
        switch (effect.kind) {
            case Kind::Ending:
                list.push_back({{"ending", true}});
                break;
            case Kind::Property:
                list.push_back({{"property", effect.name}});
                break;
            case Kind::File:
                list.push_back({{"file", effect.name}});
                break;
            case Kind::Device:
                list.push_back({{"device", effect.name}});
                break;
            case Kind::Tag:
                list.push_back(
                    {{"device", effect.name}, {"tag", HexNumber(effect.tag)}, {"name", TagName(effect.tag)}});
                break;
            case Kind::HandOver:
                list.push_back({{"thirdCalibration", effect.handOver}});
                break;
            case Kind::Log:
                list.push_back({{"log", effect.name}});
                break;
        }
    }
    return list;
}

}  // namespace

std::string StretchText(const analysis::Stretch& stretch) {
    const std::string first = formats::HexNumber(stretch.first, 4);
    return stretch.count == 1 ? first
                              : first + " to " + formats::HexNumber(stretch.first + stretch.count - 1, 4);
}

std::string RangeText(const Range& range) {
    return StretchText(range.bytes) + (range.tried > 1 ? "*" : "");
}

std::string StepNote(const Influence& influence) {
    if (influence.step <= 1) {
        return "";
    }
    const bool marked =
        std::any_of(influence.inputs.begin(), influence.inputs.end(), [&](const InputInfluence& of) {
            return std::any_of(of.ranges.begin(), of.ranges.end(), [&](const Range& range) {
                return !range.open && range.effects != 0 && range.tried > 1;
            });
        });
    const std::string step = std::to_string(influence.step);
    return (marked ? "* changed " + step + " bytes at a time, first and last bytes found one by one. " : "") +
           "What reaches nothing was changed in larger stretches, all else byte by byte; --step 1 changes "
           "each "
           "byte by itself.";
}

std::vector<std::string> EffectTexts(const Effects& effects, bool logToo) {
    std::vector<std::string> texts;
    std::map<std::uint32_t, std::vector<std::string>> tags;
    for (const Effect& effect : effects) {
        switch (effect.kind) {
            case Kind::Ending:
                texts.emplace_back("how the boot ends");
                break;
            case Kind::Property:
            case Kind::File:
                texts.push_back(Printable(effect.name));
                break;
            case Kind::Device:
                texts.push_back("device " + effect.name);
                break;
            case Kind::HandOver:
                texts.push_back("third calibration hand-over " + std::to_string(effect.handOver + 1));
                break;
            case Kind::Tag:
                tags[effect.tag].push_back(effect.name);
                break;
            case Kind::Log:
                break;
        }
    }
    for (const auto& [tag, devices] : tags) {
        texts.push_back(TagName(tag) + (devices.size() == 1 ? " of device " : " of devices ") +
                        Listed(devices));
    }
    for (const Effect& effect : effects) {
        if (logToo && effect.kind == Kind::Log) {
            texts.push_back("[" + Printable(effect.name) + "]");
        }
    }
    return texts;
}

void PrintInfluence(std::ostream& out, const Influence& influence, const Style& style) {
    out << style.bold("Phone " + Printable(influence.phone) + ": what decides what is published, found by " +
                      Counted(influence.boots, "boot"))
        << '\n';
    if (!influence.complete) {
        out << style.bad("INCOMPLETE: the search was stopped; this is what was known by then.") << '\n';
    }
    std::vector<std::string> idle;
    for (const InputInfluence& of : influence.inputs) {
        if (of.input.kind != Input::Kind::Module && !ReachesSomething(influence, of)) {
            const bool tried = influence.complete || of.without;
            idle.push_back((of.input.kind == Input::Kind::File ? "file " : "property ") +
                           Printable(of.input.name) + (tried ? "" : " (not found out)"));
            continue;
        }
        out << '\n' << style.bold(Heading(influence, of)) << '\n';
        if (of.without && *of.without != 0) {
            PrintItems(out, of.input.kind == Input::Kind::File ? "  without it:" : "  other values:", kLead,
                       EffectTexts(influence.sets[*of.without], false));
        }
        PrintRanges(out, influence, of);
    }
    if (!idle.empty()) {
        out << '\n' << "No published value depends on\n";
        for (const std::string& name : idle) {
            out << "  " << name << '\n';
        }
    }
    if (!influence.unsteady.empty()) {
        out << '\n';
        PrintItems(out, "Left out, since it differs from boot to boot:", 2,
                   EffectTexts(influence.unsteady, true));
    }
    if (const std::string note = StepNote(influence); !note.empty()) {
        out << '\n' << note << '\n';
    }
}

void WriteInfluence(std::ostream& out, const Influence& influence) {
    nlohmann::ordered_json report;
    report["format"] = 1;
    report["phone"] = influence.phone;
    report["step"] = influence.step;
    report["boots"] = influence.boots;
    report["complete"] = influence.complete;
    report["unsteady"] = EffectsJson(influence.unsteady);
    nlohmann::ordered_json& inputs = report["inputs"] = nlohmann::ordered_json::array();
    for (const InputInfluence& of : influence.inputs) {
        constexpr const char* kKinds[] = {"module", "file", "property"};
        nlohmann::ordered_json input;
        input[kKinds[static_cast<std::size_t>(of.input.kind)]] = of.input.name;
        if (of.input.kind == Input::Kind::Module) {
            input["sensor"] = of.input.sensor;
        }
        if (of.input.kind == Input::Kind::Property) {
            input["set"] = of.input.set;
        } else {
            input["size"] = of.input.size;
        }
        if (of.without) {
            input["without"] = EffectsJson(influence.sets[*of.without]);
        }
        nlohmann::ordered_json& ranges = input["ranges"] = nlohmann::ordered_json::array();
        for (const Range& range : of.ranges) {
            ranges.push_back({{"first", range.bytes.first},
                              {"count", range.bytes.count},
                              {"changedAtOnce", range.tried},
                              {"known", !range.open},
                              {"reaches", EffectsJson(influence.sets[range.effects])}});
        }
        inputs.push_back(std::move(input));
    }
    out << report.dump(1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

}  // namespace zvcam
