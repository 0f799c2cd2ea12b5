#include "analysis/MemoryMap.h"

#include <algorithm>
#include <tuple>

#include "analysis/Calibration.h"
#include "analysis/Modules.h"
#include "formats/Hex.h"
#include "tables/CameraModules.h"
#include "tables/Stabiliser.h"

namespace analysis {

namespace {

using formats::HexNumber;
using Kind = MarkedRange::Kind;
using State = MarkedRange::State;

/// The bytes that a module keeps its header id in, whatever its layout.
constexpr std::size_t kHeaderIdSize = 4;

/// The ranges of one image as they are found.
class Marks {
  public:
    /// Nothing is marked outside of the image.
    void add(Kind kind, std::string name, int offset, int size, std::string value,
             State state = State::Unchecked) {
        if (size > 0 && tables::IsInImage(offset, size)) {
            const auto first = static_cast<std::size_t>(offset);
            mRanges.push_back({.kind = kind,
                               .name = std::move(name),
                               .first = first,
                               .last = first + static_cast<std::size_t>(size) - 1,
                               .value = std::move(value),
                               .state = state});
        }
    }

    /// A range and the byte that holds its checksum.
    void addChecked(Kind kind, const std::string& name, int offset, int size,
                    const formats::CheckSumFinding& finding, bool empty) {
        const State state = !finding.good() ? State::Bad : empty ? State::Empty : State::Good;
        add(kind, name, offset, size, "", state);
        add(Kind::CheckSum, name + " checksum", static_cast<int>(finding.range.checkSumAddr), 1,
            HexNumber(finding.stored, 2) + " stored, " + HexNumber(finding.computed, 2) + " computed", state);
    }

    std::vector<MarkedRange> take() {
        std::stable_sort(mRanges.begin(), mRanges.end(),
                         [](const MarkedRange& left, const MarkedRange& right) {
                             return std::tuple(left.first, right.last) < std::tuple(right.first, left.last);
                         });
        return std::move(mRanges);
    }

  private:
    std::vector<MarkedRange> mRanges;
};

void MarkIdentity(formats::ImageBytes image, const ModuleMemory& memory, Marks& marks) {
    const formats::ModuleIdentity identity = formats::ReadIdentity(image);
    marks.add(Kind::Identity, "maker", tables::kVendorIdOffset, 1,
              HexNumber(memory.makerId, 2) + " " + (memory.maker.empty() ? "unknown" : memory.maker));
    const EepromCheckSumDesc& layout = memory.layout == nullptr ? tables::kEepromLayouts[0] : *memory.layout;
    marks.add(Kind::Identity, "header id", static_cast<int>(layout.headerIdOffset), kHeaderIdSize,
              HexNumber(formats::ReadHeaderId(image, layout), 8) + ", " +
                  (memory.layout == nullptr ? "of no layout" : memory.layout->eepromName));
    marks.add(Kind::Identity, "lens id", tables::kLensIdOffset, 1, HexNumber(identity.lensId, 2));
    marks.add(Kind::Identity, "sensor id", tables::kSensorIdOffset, 1, HexNumber(identity.sensorId, 2));
}

void MarkFuseId(formats::ImageBytes image, int role, Marks& marks) {
    for (const tables::FuseIdOfRole& row : tables::kFuseIds) {
        if (row.roleId == role) {
            marks.add(Kind::FuseId, "fuse id", row.fuseId.fuseIdOffset, row.fuseId.fuseIdLength,
                      formats::UpperHex(formats::ReadFuseId(image, row.fuseId)));
        }
    }
}

void MarkQRCode(int role, const ModuleMemory& memory, formats::ImageBytes image, Marks& marks) {
    for (const tables::QRCodeOfRole& row : tables::kQRCodes) {
        if (row.roleId == role && row.makerId == memory.makerId) {
            const QRCodeDescriptor& place = row.qrCode;
            const bool valid = formats::ReadQRCode(image, place).has_value();
            marks.add(Kind::QRCode, "QR code flag", place.flagOffset, 1,
                      HexNumber(image[static_cast<std::size_t>(place.flagOffset)], 2) +
                          (valid ? ", there is a code" : ", there is no code"));
            marks.add(Kind::QRCode, "QR code", place.qrCodeOffset, place.qrCodeLength,
                      valid ? memory.qrCode : "not valid");
        }
    }
}

void MarkStabiliser(formats::ImageBytes image, Marks& marks) {
    const auto parameters = formats::ReadStabiliserParameters(image);
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const tables::StabiliserField& field = tables::kStabiliserFields[i];
        marks.add(Kind::Stabiliser, field.name, field.offset, field.size, std::to_string(parameters[i]));
    }
}

/// A pair's block. Its checksum covers the bytes from the block's offset through the number that its length
/// is, and stands behind them: both are counted from the start of the image.
void MarkBlock(formats::ImageBytes image, const DualCameraCalDataInfo& pair, Marks& marks) {
    if (tables::IsInImage(pair.eepromOffset, pair.length) && tables::IsInImage(pair.length + 1, 1)) {
        const auto offset = static_cast<std::uint32_t>(pair.eepromOffset);
        const auto length = static_cast<std::uint32_t>(pair.length);
        marks.addChecked(
            Kind::CalibrationBlock, PairName(pair) + " calibration block", pair.eepromOffset, pair.length,
            formats::CheckRange(
                image, {.name = "", .startAddr = offset, .endAddr = length, .checkSumAddr = length + 1}),
            false);
    }
}

}  // namespace

std::vector<MarkedRange> MarkedRangesOf(formats::ImageBytes image, const EepromCheckSumDesc* layout, int role,
                                        std::span<const DualCameraCalDataInfo> pairs) {
    const ModuleMemory memory = MemoryOf(image, layout, role);
    Marks marks;
    MarkIdentity(image, memory, marks);
    MarkFuseId(image, role, marks);
    MarkQRCode(role, memory, image, marks);
    for (const CheckedRange& checked : memory.ranges) {
        const SubModuleCheckSumDesc& range = checked.finding.range;
        marks.addChecked(Kind::Checked, range.name, static_cast<int>(range.startAddr),
                         static_cast<int>(range.endAddr - range.startAddr + 1), checked.finding,
                         checked.empty);
    }
    if (role == tables::kStabilisedRole) {
        MarkStabiliser(image, marks);
    }
    for (const DualCameraCalDataInfo& pair : pairs) {
        if (pair.dataCamera == role) {
            MarkBlock(image, pair, marks);
        }
    }
    return marks.take();
}

}  // namespace analysis
