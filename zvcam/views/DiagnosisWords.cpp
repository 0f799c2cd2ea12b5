#include "zvcam/views/DiagnosisWords.h"

#include <algorithm>
#include <map>

namespace zvcam {

using analysis::CalibrationSource;
using analysis::Device;
using analysis::Diagnosis;
using analysis::Module;
using analysis::PairDecision;

std::string FileName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

std::string EndingText(const record::BootRecord& boot) {
    return !boot.ended || boot.ended->returned() ? "" : "the plug-in " + record::EndText(*boot.ended);
}

std::string ForeignFilesText(const record::BootRecord& boot) {
    return boot.foreignFiles == 0
               ? ""
               : Counted(boot.foreignFiles, "file") +
                     " under the root lay there before the boot; --clean-root removes what is there first.";
}

std::string Summary(const Diagnosis& diagnosis) {
    std::string text;
    const auto fitted = std::count_if(diagnosis.modules.begin(), diagnosis.modules.end(),
                                      [](const Module& module) { return module.fitted(); });
    const auto readable =
        std::count_if(diagnosis.modules.begin(), diagnosis.modules.end(),
                      [](const Module& module) { return module.reading == Module::Reading::Good; });
    const auto notTried = std::count_if(
        diagnosis.modules.begin(), diagnosis.modules.end(),
        [](const Module& module) { return module.fitted() && module.reading == Module::Reading::NotTried; });
    if (fitted == 0 && (!diagnosis.modules.empty() || !diagnosis.noModules.empty())) {
        text += "no module found, ";
    } else if (fitted > 0) {
        text += std::to_string(readable) + " of " + Counted(static_cast<std::size_t>(fitted), "module") +
                " readable" + (notTried > 0 ? " (" + std::to_string(notTried) + " not read)" : "") + ", ";
    }
    const auto uncalibrated =
        std::count_if(diagnosis.pairs.begin(), diagnosis.pairs.end(),
                      [](const PairDecision& pair) { return pair.source == PairDecision::Source::None; });
    if (uncalibrated > 0) {
        text += Counted(static_cast<std::size_t>(uncalibrated), "pair") + " without calibration, ";
    }
    if (diagnosis.stabiliser && !diagnosis.stabiliser->fromFile) {
        text += "no stabiliser calibration, ";
    }
    text += Counted(diagnosis.errorLines, "error line");
    if (diagnosis.errorLinesOnEveryPhone > 0) {
        text += diagnosis.errorLinesOnEveryPhone == diagnosis.errorLines
                    ? " (on every phone)"
                    : " (" + std::to_string(diagnosis.errorLinesOnEveryPhone) + " of them on every phone)";
    }
    return text;
}

std::string NoModulesText(const Diagnosis& diagnosis) {
    return diagnosis.noModules.empty() ? "the boot did not come to name them"
                                       : "none was named: " + diagnosis.noModules;
}

std::size_t MissingCount(const Device& device) {
    std::size_t count = 0;
    for (const analysis::MissingTags& missing : device.missing) {
        count += missing.tags.size();
    }
    return count;
}

std::vector<std::string> ReasonsAgainstOthers(const PairDecision& decision) {
    std::vector<std::string> reasons;
    for (const analysis::PassedOver& passed : decision.passedOver) {
        // What explains nothing: modules that carry no block, and files of others beside the pair's own.
        const bool telling = passed.candidate == analysis::SourceName(CalibrationSource::Eeprom)
                                 ? decision.pair->eepromOffset >= 0
                                 : decision.source != PairDecision::Source::Persist || !passed.ofAnotherPair;
        if (telling) {
            const std::string candidate =
                passed.candidate.ends_with('/') ? passed.candidate : FileName(passed.candidate);
            reasons.push_back("not " + Printable(candidate) + ": " + Printable(passed.reason));
        }
    }
    return reasons;
}

std::vector<std::string> ProviderNotes(const Diagnosis& diagnosis) {
    std::map<std::uint32_t, std::vector<std::string>> updates;
    for (const Device& device : diagnosis.devices) {
        updates[device.provider].push_back(analysis::DeviceNumber(device.logicalIndex, device.memberId));
    }
    std::vector<std::string> notes;
    for (const auto& [provider, numbers] : updates) {
        const auto state = diagnosis.endStates.find(provider);
        if (numbers.size() > 1 && state != diagnosis.endStates.end()) {
            notes.push_back("Provider " + HexNumber(provider) + " is that of " + Listed(numbers) +
                            ", the later over the earlier: it ends with " +
                            Counted(state->second.size(), "tag") + ".");
        }
    }
    return notes;
}

std::vector<std::string> ClosingNotes(const analysis::Boot& boot, const Diagnosis& diagnosis) {
    std::vector<std::string> notes = {
        "Published: " +
        (diagnosis.storedProperties == 1 ? std::string("1 property")
                                         : std::to_string(diagnosis.storedProperties) + " properties") +
        ", " + Counted(boot.record.files.size() + boot.record.rewritten.size(), "file") + ", " +
        Counted(record::EventsOf<record::ProviderMerge>(boot.record).size(), "device set") +
        ". `zvcam why` explains each."};
    if (!boot.phone) {
        notes.emplace_back(
            "The report does not say which phone it was: what its memories hold is not known.");
    }
    if (const std::string words = ForeignFilesText(boot.record); !words.empty()) {
        notes.push_back(words);
    }
    for (const std::string& trouble : boot.record.troubles) {
        notes.push_back("Not known: " + Printable(trouble));
    }
    if (!diagnosis.idleFaults.empty()) {
        std::string faults;
        for (const std::string& fault : diagnosis.idleFaults) {
            faults += (faults.empty() ? "" : ", ") + Printable(fault);
        }
        notes.push_back("Faults that were never asked for: " + faults);
    }
    return notes;
}

JudgedWords MemoryWords(const Module& module) {
    switch (module.reading) {
        case Module::Reading::NotTried:
            return {"not read"};
        case Module::Reading::Failed:
            return {"READ FAILED" + (module.read ? " (" + Counted(*module.read, "byte") + ")" : ""),
                    Verdict::Bad};
        case Module::Reading::Good:
            break;
    }
    if (!module.memory) {
        return {"read"};
    }
    if (module.memory->erased) {
        return {"ERASED (all " + HexNumber(*module.memory->erased) + ")", Verdict::Bad};
    }
    if (module.memory->maker.empty()) {
        return {"maker " + HexNumber(module.memory->makerId) + " unknown", Verdict::Bad};
    }
    return {module.memory->maker};
}

JudgedWords ChecksumWords(const analysis::CheckedRange& range) {
    return !range.finding.good() ? JudgedWords{"BAD", Verdict::Bad}
           : range.empty         ? JudgedWords{"empty", Verdict::Doubtful}
                                 : JudgedWords{"ok", Verdict::Good};
}

JudgedWords SourceWords(const PairDecision& decision) {
    const std::string name = analysis::SourceName(decision.source);
    switch (decision.source) {
        case CalibrationSource::None:
            return {"NONE", Verdict::Bad};
        case CalibrationSource::Golden:
            return {name, Verdict::Doubtful};
        case CalibrationSource::Eeprom:
        case CalibrationSource::Persist:
            break;
    }
    return {name};
}

JudgedWords SourceWords(const analysis::StabiliserDecision& decision) {
    const std::string name = analysis::SourceName(decision.source());
    return decision.fromFile ? JudgedWords{name} : JudgedWords{name, Verdict::Doubtful};
}

std::string GainWords(const analysis::StabiliserDecision& decision) {
    return "gains " + decision.parameters;
}

std::string ReasonAgainstFile(const analysis::StabiliserDecision& decision) {
    return decision.fromFile ? "" : "the persist file " + decision.reason;
}

JudgedWords TagCountWords(const Device& device) {
    return device.metadata == nullptr ? JudgedWords{"the boot ended here", Verdict::Bad}
                                      : JudgedWords{std::to_string(device.metadata->size())};
}

}  // namespace zvcam
