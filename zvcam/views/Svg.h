#pragma once

#include <array>
#include <charconv>
#include <limits>
#include <string>

#include "zvcam/views/Html.h"

/// Shapes of the pictures on a page, in the units of their picture.
namespace zvcam {

/// "12", "0.25": a coordinate as short as it can be. Any finite number has room.
inline std::string Units(double number) {
    std::array<char, std::numeric_limits<double>::max_exponent10 + 8> text;
    char* end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, 2).ptr;
    while (end[-1] == '0') {
        --end;
    }
    return {text.data(), end[-1] == '.' ? end - 1 : end};
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
