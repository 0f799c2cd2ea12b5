#include "zvcam/views/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <ostream>
#include <utility>

#include "analysis/TagContents.h"
#include "tables/PublishedTags.h"

namespace zvcam {

namespace {

/// Bytes of a blob that are shown.
constexpr std::size_t kShownBytes = 16;

/// Columns that a text takes on a terminal: colour takes none, nor do the later bytes of a UTF-8 character.
std::size_t Width(std::string_view text) {
    std::size_t width = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\x1B') {
            i = std::min(text.find('m', i), text.size());
        } else if ((static_cast<std::uint8_t>(text[i]) & 0xC0U) != 0x80U) {
            ++width;
        }
    }
    return width;
}

}  // namespace

std::string FloatText(float number) {
    std::array<char, 64> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

std::string TagName(std::uint32_t tag) {
    const tables::PublishedTag* const row = tables::FindPublishedTag(tag);
    return row == nullptr ? HexNumber(tag) : row->name;
}

std::string Counted(std::size_t count, std::string_view noun) {
    return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

std::string Listed(const std::vector<std::string>& texts) {
    std::string list;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        list += (i == 0 ? "" : i + 1 == texts.size() ? " and " : ", ") + texts[i];
    }
    return list;
}

std::string ShellQuoted(std::string_view text) {
    std::string quoted = "'";
    for (const char character : text) {
        quoted += character == '\'' ? "'\\''" : std::string(1, character);
    }
    return quoted + "'";
}

std::string NearWords(const std::vector<std::string>& names) {
    std::vector<std::string> quoted;
    quoted.reserve(names.size());
    for (const std::string& name : names) {
        quoted.push_back('"' + name + '"');
    }
    return names.empty() ? "" : (names.size() == 1 ? "; near is " : "; near are ") + Listed(quoted);
}

BlobGlance GlanceAt(std::span<const std::uint8_t> bytes) {
    std::string text = Counted(bytes.size(), "byte");
    const analysis::BlockContent content = analysis::ContentOf(bytes);
    if (content.filledWith && bytes.size() > kShownBytes) {
        return {.text = text + " of " + HexNumber(*content.filledWith), .whole = true};
    }
    const std::size_t shown = std::min(bytes.size(), kShownBytes);
    for (std::size_t i = 0; i < shown; ++i) {
        text += (i == 0 ? ": " : " ") + formats::UpperHex(bytes.subspan(i, 1));
    }
    const bool whole = shown == bytes.size();
    if (!whole) {
        text += " and " + std::to_string(bytes.size() - shown) + " more";
    }
    return {.text = std::move(text), .whole = whole};
}

std::string BlobText(std::span<const std::uint8_t> bytes) {
    return GlanceAt(bytes).text;
}

std::string Milliseconds(std::int64_t nanoseconds) {
    std::array<char, 40> text;
    std::snprintf(text.data(), text.size(), "%.3f", static_cast<double>(nanoseconds) / 1e6);
    return text.data();
}

void Table::print(std::ostream& out, std::size_t indent) const {
    std::vector<std::size_t> widths;
    for (const std::vector<std::string>& row : mRows) {
        widths.resize(std::max(widths.size(), row.size()));
        // What stands last in a row widens no column.
        for (std::size_t i = 0; i + 1 < row.size(); ++i) {
            widths[i] = std::max(widths[i], Width(row[i]));
        }
    }
    for (const std::vector<std::string>& row : mRows) {
        std::string line(indent, ' ');
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size()) {
                line.append(widths[i] - Width(row[i]) + 2, ' ');
            }
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    }
}

}  // namespace zvcam
