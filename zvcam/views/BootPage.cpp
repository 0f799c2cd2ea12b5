#include "zvcam/views/BootPage.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "analysis/DeviceGroups.h"
#include "analysis/Steps.h"
#include "analysis/Timeline.h"
#include "zvcam/views/DiagnosisPage.h"
#include "zvcam/views/DiagnosisWords.h"
#include "zvcam/views/EepromPicture.h"
#include "zvcam/views/Html.h"
#include "zvcam/views/MetadataView.h"
#include "zvcam/views/RecordTables.h"
#include "zvcam/views/StreamsPicture.h"
#include "zvcam/views/Svg.h"
#include "zvcam/views/TimelinePicture.h"
#include "zvcam/views/ZoomRulers.h"

namespace zvcam {

namespace {

using analysis::Diagnosis;

Markup Lead(const analysis::Boot& boot, const Diagnosis& diagnosis) {
    Markup lead;
    if (const std::string ending = EndingText(boot.record); !ending.empty()) {
        lead += Element("p", {{"class", "ending"}, {"role", "alert"}},
                        Judged(Verdict::Bad, "The boot did not return: " + ending));
    }
    lead += Element("p", {{"class", "lead"}}, Summary(diagnosis));
    if (boot.record.plugin) {
        const auto& [path, buildId] = *boot.record.plugin;
        lead += Element("p", {{"class", "quiet"}},
                        "Plug-in " + Element("code", {}, path) +
                            (buildId.empty() ? Markup() : ", build " + Element("code", {}, buildId)));
    }
    return lead;
}

/// What fills a range that is bad, for those who do not see its colour.
Markup Hatching() {
    return Element("svg", {{"class", "defs"}, {"aria-hidden", "true"}},
                   Element("pattern",
                           {{"id", "hatch"},
                            {"width", "3"},
                            {"height", "3"},
                            {"patternUnits", "userSpaceOnUse"},
                            {"patternTransform", "rotate(45)"}},
                           SvgPath("M0 0V3", "hatch")));
}

PageSection Memories(const analysis::Boot& boot, const Diagnosis& diagnosis) {
    if (!boot.phone) {
        return {"memories", "Modules' memories",
                Paragraph("The report does not say what the modules' memories hold.")};
    }
    Markup pictures;
    for (const analysis::Module& module : diagnosis.modules) {
        if (module.memory) {
            pictures += EepromPicture(module);
        } else if (module.fitted()) {
            pictures += Element("article", {},
                                Element("h3", {}, module.name + ", " + module.chip) +
                                    Paragraph(module.reading == analysis::Module::Reading::Failed
                                                  ? Judged(Verdict::Bad, "Its memory could not be read.")
                                                  : Markup("Its memory was not read.")));
        }
    }
    if (pictures.empty()) {
        pictures = Paragraph("No module's memory was read.");
    }
    return {"memories", "Modules' memories", Hatching() + pictures};
}

PageSection Streams(const analysis::Boot& boot, const Diagnosis& diagnosis) {
    const std::vector<analysis::SharedStreams> lists = analysis::SharedStreamsOf(boot.record);
    const StreamScale scale = ScaleOf(lists);
    Markup content;
    for (const analysis::SharedStreams& list : lists) {
        content += StreamsPicture(list, scale,
                                  "Devices " + DevicesText(list.merges, boot.record, diagnosis.devices));
    }
    return {"streams", "Stream sizes",
            lists.empty() ? Paragraph("No device offers any.")
                          : Paragraph("Every rectangle is a size, all of them to one scale. A broken line is "
                                      "an input.") +
                                content};
}

PageSection Zoom(const analysis::Boot& boot, const Diagnosis& diagnosis) {
    Markup content;
    for (const analysis::SharedTag& shared : analysis::SharedTagsOf(boot.record)) {
        if (const Markup rulers = ZoomRulers(*shared.tag); !rulers.empty()) {
            content += Element(
                "article", {},
                Element("h3", {}, "Devices " + DevicesText(shared.merges, boot.record, diagnosis.devices)) +
                    rulers);
        }
    }
    return {"zoom", "Zoom scales", content.empty() ? Paragraph("No device has any.") : content};
}

PageSection Course(const analysis::Boot& boot, const analysis::Course& course, const Diagnosis& diagnosis) {
    const auto timeline = analysis::TimelineOf(boot.record, course);
    return {"timeline", "What happened when",
            timeline ? TimelinePicture(boot.record, *timeline, diagnosis.devices)
                     : Paragraph("The report does not say in which order things happened.")};
}

}  // namespace

void WriteBootPage(std::ostream& out, const analysis::Boot& boot, const Diagnosis& diagnosis) {
    const analysis::Course course = analysis::CourseOf(boot.record);
    Page page = {.title = boot.record.phone.empty() ? "A phone without a name" : boot.record.phone,
                 .about = "zvcam run",
                 .lead = Lead(boot, diagnosis),
                 .sections = DiagnosisSections(boot, diagnosis),
                 .kinds = {{"finding", "findings"},
                           {"property", "properties"},
                           {"file", "files"},
                           {"tag", "tags"},
                           {"line", "log lines"},
                           {"error", "error lines"}}};
    for (const analysis::Device& device : diagnosis.devices) {
        page.kinds.emplace_back(KindOf(device), DeviceText(device));
    }
    page.sections.push_back(Memories(boot, diagnosis));
    page.sections.push_back(Streams(boot, diagnosis));
    page.sections.push_back(Zoom(boot, diagnosis));
    page.sections.push_back(Course(boot, course, diagnosis));
    for (PageSection& section : RecordSections(boot, course, diagnosis.devices)) {
        page.sections.push_back(std::move(section));
    }
    WritePage(out, page);
}

}  // namespace zvcam
