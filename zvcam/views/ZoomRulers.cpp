#include "zvcam/views/ZoomRulers.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "analysis/TagContents.h"
#include "zvcam/views/Svg.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

constexpr double kRulerLength = 800;

std::size_t CountOf(const formats::ZoomScaleRecord& record) {
    return std::min<std::size_t>(record.count, formats::kZoomScaleCapacity);
}

/// The control's length, as its last position says it; 0 where it says none.
double LengthOf(const formats::ZoomScaleRecord& record) {
    double length = 0;
    for (std::size_t i = 0; i < CountOf(record); ++i) {
        if (std::isfinite(record.positions[i])) {
            length = std::max(length, static_cast<double>(record.positions[i]));
        }
    }
    return length;
}

Markup Ruler(const formats::ZoomScaleRecord& record) {
    const double length = LengthOf(record);
    Markup shapes = SvgPath("M0 30H" + Units(kRulerLength), "rule");
    std::string spoken = "Zoom scale of type " + std::to_string(record.type) + ":";
    for (std::size_t i = 0; i < CountOf(record); ++i) {
        const double position = record.positions[i];
        const std::string ratio = FloatText(record.ratios[i]) + "\u00D7";
        spoken += (i == 0 ? " " : ", ") + ratio + " at " + FloatText(record.positions[i]);
        if (length > 0 && position >= 0 && position <= length) {
            const double x = position / length * kRulerLength;
            shapes += SvgPath("M" + Units(x) + " 22v16", "rule tick");
            shapes += SvgText(x, 15, ratio, "ratio");
            shapes += SvgText(x, 53, Units(position), "position");
        }
    }
    return Element("figure", {{"class", "ruler"}},
                   SvgPicture("-40 0 880 60", spoken, shapes) + Element("figcaption", {}, spoken));
}

}  // namespace

Markup ZoomRulers(const record::Tag& tag) {
    Markup rulers;
    for (const formats::ZoomScaleRecord& record : analysis::ZoomScalesOf(tag)) {
        rulers += Ruler(record);
    }
    return rulers;
}

}  // namespace zvcam
