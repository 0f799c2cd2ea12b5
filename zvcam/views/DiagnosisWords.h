#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "analysis/Diagnosis.h"
#include "zvcam/views/Text.h"

/// The words of a diagnosis, which text and page say alike.
namespace zvcam {

/// "b.bin" of "/a/b.bin".
std::string FileName(const std::string& path);

/// How a boot ended, in words: "the plug-in was ended by SIGSEGV in OverriderDualCamCalData". Empty where it
/// returned or nobody says.
std::string EndingText(const record::BootRecord& boot);

/// That files lay in a kept root already which the phone did not lay: what is published may rest on them.
/// Empty where there were none.
std::string ForeignFilesText(const record::BootRecord& boot);

/// "2 of 3 modules readable, no stabiliser calibration, 38 error lines (6 of them on every phone)".
std::string Summary(const analysis::Diagnosis& diagnosis);

/// Why there are no modules to show.
std::string NoModulesText(const analysis::Diagnosis& diagnosis);

/// Tags that a device would have had.
std::size_t MissingCount(const analysis::Device& device);

/// Why no other place served a pair's block, a text a place; those that explain nothing are left out.
std::vector<std::string> ReasonsAgainstOthers(const analysis::PairDecision& decision);

/// A sentence for each provider that several devices share.
std::vector<std::string> ProviderNotes(const analysis::Diagnosis& diagnosis);

/// What was published, and what is not known of the boot, a line each.
std::vector<std::string> ClosingNotes(const analysis::Boot& boot, const analysis::Diagnosis& diagnosis);

/// What became of a module's memory: its maker, or what is wrong.
JudgedWords MemoryWords(const analysis::Module& module);

/// How the checksum of a range came out: "BAD", "empty", "ok".
JudgedWords ChecksumWords(const analysis::CheckedRange& range);

/// Where calibration came from.
JudgedWords SourceWords(const analysis::PairDecision& decision);
JudgedWords SourceWords(const analysis::StabiliserDecision& decision);
/// What the stabiliser runs with, and why not with its persist file; the latter empty where it does.
std::string GainWords(const analysis::StabiliserDecision& decision);
std::string ReasonAgainstFile(const analysis::StabiliserDecision& decision);

/// The tags that were published for a device, in number.
JudgedWords TagCountWords(const analysis::Device& device);

}  // namespace zvcam
