// Any text as a report. One that is read and written reads as the same again.

#include <optional>
#include <sstream>

#include "fuzz/support/Fuzzing.h"
#include "record/Report.h"

namespace {

/// None where the text is no report.
std::optional<record::BootRecord> Read(std::string_view text) {
    try {
        return record::ReadReport(text);
    } catch (const record::ReportError&) {
        return std::nullopt;
    }
}

std::string Written(const record::BootRecord& boot) {
    std::ostringstream report;
    record::WriteReport(report, boot);
    return std::move(report).str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const auto boot = Read(TextOf({data, size}))) {
        const std::string report = Written(*boot);
        const auto again = Read(report);
        Require(again && Written(*again) == report);
    }
    return 0;
}
