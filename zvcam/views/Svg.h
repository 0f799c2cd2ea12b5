#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

#include "zvcam/views/Html.h"

/// Shapes of the pictures on a page, in the units of their picture.
namespace zvcam {

/// "12", "0.25": a coordinate as short as it can be.
inline std::string Units(double number) {
    std::array<char, 32> text;
    const auto size = static_cast<std::size_t>(std::snprintf(text.data(), text.size(), "%.2f", number));
    std::string_view units(text.data(), size);
    units.remove_suffix(units.size() - 1 - units.find_last_not_of('0'));
    return std::string(units.substr(0, units.size() - (units.ends_with('.') ? 1 : 0)));
}

/// What a pointer that rests on a shape, and whoever listens to it, is told.
inline Markup Title(const Markup& words) {
    return words.empty() ? Markup() : Element("title", {}, words);
}

inline Markup SvgRect(double x, double y, double width, double height, const std::string& style,
                      const Markup& title = {}) {
    return Element("rect",
                   {{"x", Units(x)},
                    {"y", Units(y)},
                    {"width", Units(width)},
                    {"height", Units(height)},
                    {"class", style}},
                   Title(title));
}

inline Markup SvgText(double x, double y, const Markup& words, const std::string& style = {}) {
    return Element("text", {{"x", Units(x)}, {"y", Units(y)}, {"class", style}}, words);
}

inline Markup SvgPath(const std::string& path, const std::string& style) {
    return Element("path", {{"d", path}, {"class", style}});
}

/// A picture; it takes the width that it is given.
/// @param label what it shows, for whoever does not see it; empty: what stands beside it says the same.
inline Markup SvgPicture(const std::string& viewBox, const std::string& label, const Markup& shapes) {
    return Element("svg",
                   {{"viewBox", viewBox},
                    {"role", label.empty() ? "" : "img"},
                    {"aria-label", label},
                    {"aria-hidden", label.empty() ? "true" : ""}},
                   shapes);
}

}  // namespace zvcam
