#include "analysis/EepromFindings.h"

#include <algorithm>

#include "formats/FuseIdText.h"
#include "formats/Hex.h"
#include "formats/OisCalibrationFile.h"
#include "formats/SensorInfoText.h"
#include "tables/CameraModules.h"
#include "tables/ModuleMakers.h"
#include "tables/PublishedProperties.h"
#include "tables/Stabiliser.h"

namespace analysis {

namespace {

// One place holds the header id, whatever the layout.
constexpr const EepromCheckSumDesc& kAnyLayout = tables::kEepromLayouts[0];
static_assert(std::all_of(tables::kEepromLayouts.begin(), tables::kEepromLayouts.end(),
                          [](const auto& row) { return row.headerIdOffset == kAnyLayout.headerIdOffset; }));

/// The row of the table of this kind for a role; null where there is none.
template <typename Rows>
auto RowOf(const Rows& rows, int role) {
    const auto* const found =
        std::find_if(rows.begin(), rows.end(), [=](const auto& row) { return row.roleId == role; });
    return found == rows.end() ? nullptr : found;
}

std::string Numbers(const std::vector<int>& numbers) {
    std::string text;
    for (const int number : numbers) {
        text += (text.empty() ? "" : ",") + std::to_string(number);
    }
    return text;
}

void AddPublished(formats::ImageBytes image, EepromFindings& findings) {
    const int role = *findings.role;
    const auto* const maker =
        std::find_if(tables::kModuleMakers.begin(), tables::kModuleMakers.end(),
                     [&](const auto& row) { return row.makerId == findings.identity.vendorId; });
    for (const tables::QRCodeOfRole& row : tables::kQRCodes) {
        if (row.roleId == role && row.makerId == findings.identity.vendorId) {
            findings.qrCodePlace = &row.qrCode;
        }
    }
    if (const tables::FuseIdOfRole* const row = RowOf(tables::kFuseIds, role)) {
        findings.fuseIdPlace = &row->fuseId;
        findings.fuseId = formats::ReadFuseId(image, row->fuseId);
        if (maker != tables::kModuleMakers.end()) {
            // A maker that burns no code counts as one whose flag lies at offset 0.
            const auto code = formats::ReadQRCode(
                image, findings.qrCodePlace == nullptr ? QRCodeDescriptor{} : *findings.qrCodePlace);
            const std::string text =
                formats::MakeFuseIdText(maker->name, findings.fuseId,
                                        code ? std::optional<formats::ImageBytes>(*code) : std::nullopt);
            findings.published.emplace_back(row->fuseId.propNameLong, text);
            findings.published.emplace_back(row->fuseId.propName, text);
        }
    }
    if (const tables::ModuleRole* const row = tables::FindModuleRole(role)) {
        const auto& [vendorId, lensId, sensorId] = findings.identity;
        findings.published.emplace_back(row->sensorInfoProperty,
                                        formats::MakeSensorInfoText(vendorId, lensId, sensorId));
    }
    if (role == tables::kStabilisedRole) {
        const auto parameters = formats::ReadStabiliserParameters(image);
        findings.published.emplace_back(tables::kOisAlgoParamProperty,
                                        Numbers({parameters.begin(), parameters.begin() + 4}));
        findings.published.emplace_back(tables::kOisSensitivityProperty,
                                        Numbers({formats::OisSensitivityMillionths(parameters[4]),
                                                 formats::OisSensitivityMillionths(parameters[5])}));
    }
}

void AddFindings(EepromFindings& findings) {
    const auto add = [&](Finding::Severity severity, std::string words) {
        findings.findings.push_back({.severity = severity, .about = {}, .words = std::move(words)});
    };
    const ModuleMemory& memory = findings.memory;
    if (memory.erased) {
        add(Finding::Severity::Error, "erased: every byte is " + formats::HexNumber(*memory.erased, 2));
    }
    if (memory.layout == nullptr) {
        add(Finding::Severity::Error,
            "the header id is of no layout: nothing can be checked, and the plug-in "
            "publishes the checksums as good");
    }
    if (memory.maker.empty()) {
        add(Finding::Severity::Error,
            "the maker is unknown: no fuse id is published, and no calibration file can "
            "name the module");
    }
    if (memory.layout != nullptr && !formats::IsHeaderIdOf(findings.headerId, *memory.layout)) {
        add(Finding::Severity::Warning, "the header id is not the layout's");
    }
    for (const CheckedRange& range : memory.ranges) {
        if (range.empty && range.finding.good()) {
            add(Finding::Severity::Warning,
                std::string(range.finding.range.name) + " is empty: nothing but zeros, with their checksum");
        }
    }
}

}  // namespace

bool EepromFindings::good() const {
    return std::all_of(memory.ranges.begin(), memory.ranges.end(),
                       [](const CheckedRange& range) { return range.finding.good(); }) &&
           std::none_of(findings.begin(), findings.end(),
                        [](const Finding& each) { return each.severity == Finding::Severity::Error; });
}

EepromFindings FindingsOf(formats::ImageBytes image, const EepromCheckSumDesc* layout) {
    EepromFindings findings;
    findings.identity = formats::ReadIdentity(image);
    findings.headerId = formats::ReadHeaderId(image, kAnyLayout);
    findings.layoutGiven = layout != nullptr;
    layout = findings.layoutGiven ? layout : formats::FindEepromLayout(image);
    findings.role = layout == nullptr ? std::nullopt : RoleOfLayout(*layout);
    findings.memory = MemoryOf(image, layout, findings.role.value_or(-1));
    if (findings.role) {
        AddPublished(image, findings);
    }
    AddFindings(findings);
    return findings;
}

}  // namespace analysis
