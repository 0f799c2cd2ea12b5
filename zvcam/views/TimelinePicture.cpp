#include "zvcam/views/TimelinePicture.h"

#include <algorithm>
#include <string>

#include "zvcam/views/DiagnosisView.h"
#include "zvcam/views/MetadataView.h"
#include "zvcam/views/Svg.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

using analysis::EventRun;
using analysis::TimelineStep;

/// Width of the axis, in units of the picture.
constexpr double kAxis = 600;
/// What is shorter could not be seen.
constexpr double kLeastWidth = 1.5;

Markup Bar(const EventRun& run, std::size_t events, const std::string& style) {
    const double unit = kAxis / static_cast<double>(std::max<std::size_t>(events, 1));
    const double width = std::max(kLeastWidth, static_cast<double>(run.events()) * unit);
    const double x = std::min(static_cast<double>(run.first) * unit, kAxis - width);
    Markup shapes = SvgPath("M0 6H" + Units(kAxis), "axis") + SvgRect(x, 1, width, 10, style);
    std::string errors;
    for (const std::size_t error : run.errors) {
        errors += "M" + Units((static_cast<double>(error) + 0.5) * unit) + " 0v12";
    }
    if (!errors.empty()) {
        shapes += SvgPath(errors, "error");
    }
    return Element("svg",
                   {{"viewBox", "0 0 " + Units(kAxis) + " 12"},
                    {"preserveAspectRatio", "none"},
                    {"aria-hidden", "true"}},
                   shapes);
}

std::vector<Markup> Row(const Markup& name, const EventRun& run, std::size_t events,
                        const std::string& style) {
    const auto count = [](std::size_t number) { return number == 0 ? "" : std::to_string(number); };
    return {name,
            Bar(run, events, style),
            std::to_string(run.first) + "\u2013" +
                std::to_string(run.first + std::max<std::size_t>(run.events(), 1) - 1),
            count(run.questions),
            count(run.lines),
            run.errors.empty() ? Markup() : Judged(Verdict::Bad, std::to_string(run.errors.size())),
            count(run.properties),
            count(run.tags)};
}

/// Whether the boot ended in a step.
bool EndedIn(const record::BootRecord& boot, const TimelineStep& step) {
    return boot.ended && !boot.ended->returned() && step.run && step.run->end == boot.events.size();
}

Markup StepName(const record::BootRecord& boot, std::size_t number, const TimelineStep& step) {
    Markup name = std::to_string(number) + " " + std::string(step.name);
    if (EndedIn(boot, step)) {
        name += " " + Judged(Verdict::Bad, "the boot ended here");
    }
    return name;
}

}  // namespace

Markup TimelinePicture(const record::BootRecord& boot, const analysis::Timeline& timeline,
                       const std::vector<analysis::Device>& devices) {
    using enum HtmlTable::Column::Kind;
    HtmlTable table("The order of " + Counted(timeline.events, "event") + ", by steps",
                    {{"step"},
                     {"its events, errors marked"},
                     {"events", Number},
                     {"asked", Number},
                     {"lines", Number},
                     {"errors", Number},
                     {"properties", Number},
                     {"tags", Number}});
    for (std::size_t i = 0; i < timeline.steps.size(); ++i) {
        const TimelineStep& step = timeline.steps[i];
        const Markup name = StepName(boot, i + 1, step);
        if (!step.run) {
            table.row({name, boot.ended && !boot.ended->returned() ? "not reached" : "left no trace"});
            continue;
        }
        table.row(Row(name, *step.run, timeline.events, "step"));
        for (std::size_t each = 0; each < timeline.devices.size(); ++each) {
            const EventRun& device = timeline.devices[each];
            if (device.first >= step.run->first && device.end <= step.run->end && each < devices.size()) {
                table.row(Row(DeviceText(devices[each]), device, timeline.events, "device"),
                          {{"class", "inner"}});
            }
        }
    }
    return Element("div", {{"class", "timeline"}}, table.markup());
}

}  // namespace zvcam
