// Any text as a report that someone asks about: everything that is told of a boot can be told of it.

#include "analysis/Diagnosis.h"
#include "analysis/Diff.h"
#include "analysis/Why.h"
#include "fuzz/support/Fuzzing.h"
#include "record/Report.h"
#include "tables/PublishedTags.h"
#include "virtualphone/PhoneFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        analysis::Boot boot;
        boot.record = record::ReadReport(TextOf({data, size}));
        if (!boot.record.description.empty()) {
            boot.phone = virtualphone::ParsePhone(boot.record.description, "", "/description");
        }
        const analysis::Diagnosis diagnosis = analysis::Diagnose(boot);
        const analysis::Course course = analysis::CourseOf(boot.record);
        for (const char* const name : {"ROLEID", "oiscal.state", "com.zelvan.dcal.wu.data"}) {
            for (const analysis::Item& item : analysis::ItemsNamed(name)) {
                // What is no tag has one reason, whatever the device.
                const bool isTag = item.kind == analysis::Item::Kind::Tag;
                for (std::size_t device = 0; device < (isTag ? diagnosis.devices.size() : 1); ++device) {
                    analysis::WhyOf(boot, course, diagnosis.devices, item, device);
                }
            }
        }
        Require(analysis::Compare(boot, boot).none());
    } catch (const record::ReportError&) {
        // The answer to a bad report,
    } catch (const virtualphone::PhoneFileError&) {
        // and to a bad description in one.
    }
    return 0;
}
