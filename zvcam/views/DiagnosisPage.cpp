#include "zvcam/views/DiagnosisPage.h"

#include <algorithm>

#include "zvcam/views/DiagnosisWords.h"
#include "zvcam/views/EepromPicture.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

using analysis::Device;
using analysis::Diagnosis;
using analysis::Finding;
using analysis::Module;
using analysis::PairDecision;
using Column = HtmlTable::Column;

/// A sentence in which commands stand between backquotes.
Markup Sentence(std::string_view text) {
    Markup sentence;
    for (bool isCommand = false; !text.empty(); isCommand = !isCommand) {
        const std::string_view part = text.substr(0, text.find('`'));
        sentence += isCommand ? Element("code", {}, part) : Markup(part);
        text.remove_prefix(std::min(text.size(), part.size() + 1));
    }
    return Paragraph(sentence);
}

/// Where the page shows more of what a finding is about.
std::string TargetOf(const Finding& finding, const Diagnosis& diagnosis) {
    for (const Module& module : diagnosis.modules) {
        if (module.name == finding.about) {
            return module.memory ? "#" + EepromPictureId(module) : "#modules";
        }
    }
    const bool ofPair = std::any_of(
        diagnosis.pairs.begin(), diagnosis.pairs.end(),
        [&](const PairDecision& decision) { return analysis::PairName(*decision.pair) == finding.about; });
    if (ofPair || finding.about == "stabiliser") {
        return "#calibration";
    }
    return finding.about.starts_with("device") ? "#devices" : SearchTarget(finding.about);
}

PageSection Findings(const analysis::Boot& boot, const Diagnosis& diagnosis) {
    Markup content;
    if (diagnosis.findings.empty()) {
        content += Paragraph(Judged(Verdict::Good, boot.record.ended && boot.record.ended->returned()
                                                       ? "Nothing is wrong."
                                                       : "Nothing is wrong with what the boot came to."));
    } else {
        HtmlTable table("Findings, the worst first",
                        {{"#", Column::Kind::Number}, {"how bad"}, {"what"}, {"why"}});
        table.searchable("finding");
        for (std::size_t i = 0; i < diagnosis.findings.size(); ++i) {
            const Finding& finding = diagnosis.findings[i];
            const std::string id = "finding-" + std::to_string(i + 1);
            table.row({Link("#" + id, std::to_string(i + 1)),
                       finding.severity == Finding::Severity::Error ? Judged(Verdict::Bad, "error")
                                                                    : Judged(Verdict::Doubtful, "warning"),
                       Link(TargetOf(finding, diagnosis), finding.about), finding.words},
                      {{"id", id}});
        }
        content += table.markup();
    }
    for (const std::string& note : ClosingNotes(boot, diagnosis)) {
        content += Sentence(note);
    }
    return {"diagnosis", "Diagnosis", content};
}

Markup CheckSums(const Module& module) {
    if (!module.memory || module.memory->erased) {
        return {};
    }
    if (module.memory->layout == nullptr) {
        return "layout unknown";
    }
    Markup sums;
    for (const analysis::CheckedRange& range : module.memory->ranges) {
        const std::string name = range.finding.range.name;
        const JudgedWords words = ChecksumWords(range);
        const Markup sum =
            Judged(words.verdict.value(), words.verdict == Verdict::Good ? name : name + " " + words.words);
        sums += (sums.empty() ? Markup() : Markup("  ")) + Element("span", {{"class", "nowrap"}}, sum);
    }
    return sums;
}

PageSection Modules(const Diagnosis& diagnosis) {
    if (diagnosis.modules.empty()) {
        return {"modules", "Modules", Paragraph("Modules: " + NoModulesText(diagnosis) + ".")};
    }
    HtmlTable table("Modules by role", {{"module"},
                                        {"chip"},
                                        {"EEPROM"},
                                        {"checksums"},
                                        {"fuse id", Column::Kind::Code},
                                        {"QR code", Column::Kind::Code},
                                        {"focus points", Column::Kind::Values}});
    table.searchable("module").stacked();
    for (const Module& module : diagnosis.modules) {
        if (!module.fitted()) {
            table.row({module.name, "not fitted"});
            continue;
        }
        table.row({module.memory ? Link("#" + EepromPictureId(module), module.name) : Markup(module.name),
                   module.chip, Judged(MemoryWords(module)), CheckSums(module), module.fuseId,
                   module.memory ? module.memory->qrCode : "", module.focusPoints});
    }
    return {"modules", "Modules", table.markup()};
}

Markup Listed(const std::vector<std::string>& lines) {
    if (lines.empty()) {
        return {};
    }
    Markup items;
    for (const std::string& line : lines) {
        items += Element("li", {}, line);
    }
    return Element("ul", {{"class", "plain"}}, items);
}

PageSection Calibration(const Diagnosis& diagnosis) {
    if (diagnosis.pairs.empty() && !diagnosis.stabiliser) {
        return {"calibration", "Calibration", Paragraph("The boot did not come to it.")};
    }
    HtmlTable table("Where calibration came from",
                    {{"of"}, {"from"}, {"what", Column::Kind::Values}, {"not from"}});
    table.searchable("calibration").stacked();
    for (const PairDecision& decision : diagnosis.pairs) {
        table.row({analysis::PairName(*decision.pair), Judged(SourceWords(decision)), decision.path,
                   Listed(ReasonsAgainstOthers(decision))});
    }
    if (diagnosis.stabiliser) {
        table.row({"stabiliser", Judged(SourceWords(*diagnosis.stabiliser)), GainWords(*diagnosis.stabiliser),
                   ReasonAgainstFile(*diagnosis.stabiliser)});
    }
    return {"calibration", "Calibration", table.markup()};
}

Markup Missing(const Device& device) {
    if (device.missing.empty()) {
        return {};
    }
    std::vector<std::string> lines;
    for (const analysis::MissingTags& missing : device.missing) {
        for (const std::uint32_t tag : missing.tags) {
            lines.push_back(TagName(tag) + ": " + missing.reason);
        }
    }
    return Folded(Judged(Verdict::Bad, Counted(MissingCount(device), "tag")), Listed(lines), true);
}

PageSection Devices(const Diagnosis& diagnosis) {
    if (diagnosis.devices.empty()) {
        return {"devices", "Devices", Paragraph("None was updated.")};
    }
    HtmlTable table("In the order of their updates; 4/3 is a member of 4", {{"device"},
                                                                            {"name"},
                                                                            {"provider", Column::Kind::Code},
                                                                            {"role", Column::Kind::Number},
                                                                            {"members"},
                                                                            {"tags", Column::Kind::Number},
                                                                            {"missing"}});
    table.searchable("device").stacked();
    for (const Device& device : diagnosis.devices) {
        std::string members;
        for (const int member : device.members) {
            members += (members.empty() ? "" : ", ") + std::to_string(member);
        }
        table.row(
            {Link("#in=" + KindOf(device), analysis::DeviceNumber(device.logicalIndex, device.memberId)),
             device.name, HexNumber(device.provider), device.role ? std::to_string(*device.role) : "",
             members, Judged(TagCountWords(device)), Missing(device)},
            {{"class", device.memberId ? "inner" : ""}, {"data-kind", KindOf(device)}});
    }
    Markup content = table.markup();
    for (const std::string& note : ProviderNotes(diagnosis)) {
        content += Sentence(note);
    }
    return {"devices", "Devices", content};
}

}  // namespace

std::string KindOf(const Device& device) {
    return "device-" + IdOf(analysis::DeviceNumber(device.logicalIndex, device.memberId));
}

std::vector<PageSection> DiagnosisSections(const analysis::Boot& boot, const Diagnosis& diagnosis) {
    return {Findings(boot, diagnosis), Modules(diagnosis), Calibration(diagnosis), Devices(diagnosis)};
}

}  // namespace zvcam
