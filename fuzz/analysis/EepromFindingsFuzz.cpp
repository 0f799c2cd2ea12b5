// Any bytes as the image of a module's memory, behind a byte that chooses the layout to check it by. With its
// checksums stored none of them is bad.

#include <algorithm>

#include "analysis/EepromFindings.h"
#include "fuzz/support/Fuzzing.h"
#include "tables/EepromLayouts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    // One choice more than there are layouts: the one that the image names.
    const std::size_t choice = data[0] % (tables::kEepromLayouts.size() + 1);
    const EepromCheckSumDesc* const layout =
        choice < tables::kEepromLayouts.size() ? &tables::kEepromLayouts[choice] : nullptr;
    std::vector<std::uint8_t> image(data + 1, data + std::min(size, tables::kEepromImageSize + 1));
    image.resize(tables::kEepromImageSize);

    const analysis::EepromFindings findings = analysis::FindingsOf(image, layout);
    const EepromCheckSumDesc* const checked = findings.memory.layout;
    Require(layout == nullptr || checked == layout);
    if (checked != nullptr) {
        formats::StoreCheckSums(*checked, image);
        const std::vector<formats::CheckSumFinding> ranges = formats::CheckRanges(image, *checked);
        Require(std::all_of(ranges.begin(), ranges.end(), [](const auto& range) { return range.good(); }));
    }
    return 0;
}
