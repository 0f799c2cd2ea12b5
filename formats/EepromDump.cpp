#include "formats/EepromDump.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <optional>
#include <utility>

#include "formats/PrintableText.h"

namespace formats {

namespace {

enum class Form { PlugIn, Xxd, Hexdump };

/// What one line of a dump says, or what is wrong with it.
struct DumpLine {
    std::size_t offset = 0;
    std::vector<std::uint8_t> bytes;
    std::string trouble;
};

constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";

std::size_t LeadingHexDigits(std::string_view text) {
    return std::min(text.find_first_not_of(kHexDigits), text.size());
}

std::optional<std::size_t> ParseHexNumber(std::string_view digits) {
    std::size_t number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    return error == std::errc() && stop == digits.data() + digits.size() ? std::optional(number)
                                                                         : std::nullopt;
}

bool BeginsWithHexPrefix(std::string_view text) {
    return text.starts_with("0x") || text.starts_with("0X");
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text;
}

/// The lines of a text that say something, one after the other.
class Lines {
  public:
    explicit Lines(std::string_view text) : mRest(text) {
        constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
        if (mRest.starts_with(kByteOrderMark)) {
            mRest.remove_prefix(kByteOrderMark.size());
        }
    }

    /// Without blanks at its ends; none at the end of the text.
    std::optional<std::string_view> next() {
        while (!mRest.empty()) {
            const std::size_t end = std::min(mRest.find('\n'), mRest.size());
            std::string_view line = WithoutLeadingBlanks(mRest.substr(0, end));
            mRest.remove_prefix(std::min(end + 1, mRest.size()));
            ++mNumber;
            line = line.substr(0, line.find_last_not_of(kBlanks) + 1);
            // logcat announces each of its buffers with a row of dashes.
            const bool silent = line.empty() || line.starts_with('#') || line.starts_with("//") ||
                                line.starts_with("---------");
            if (!silent) {
                return line;
            }
        }
        return std::nullopt;
    }
    std::size_t number() const { return mNumber; }

  private:
    std::string_view mRest;
    std::size_t mNumber = 0;
};

/// Where "0x0010 = ..." begins in a line of the plug-in, behind what logcat puts in front.
std::size_t FindEntry(std::string_view line) {
    std::size_t start = 0;
    while (start < line.size() && !BeginsWithHexPrefix(line.substr(start))) {
        start = std::min(line.find_first_of(" \t", start), line.size() - 1) + 1;
    }
    return start;
}

std::optional<Form> FormOf(std::string_view line) {
    const std::size_t digits = LeadingHexDigits(line);
    const std::string_view rest = line.substr(digits);
    if (digits >= 4 && rest.starts_with(':')) {
        return Form::Xxd;
    }
    if (digits >= 6 && (rest.empty() || rest.starts_with(' '))) {
        return Form::Hexdump;
    }
    return FindEntry(line) < line.size() ? std::optional(Form::PlugIn) : std::nullopt;
}

/// Appends the bytes of a group of digits; false where it is none.
bool TakeBytes(std::string_view group, DumpLine& line) {
    const std::size_t digits = LeadingHexDigits(group);
    if (digits != group.size() || digits % 2 != 0) {
        line.trouble = digits == group.size() ? "half a byte" : "\"" + Shortened(group, 30) + "\"";
        return false;
    }
    for (std::size_t i = 0; i < digits; i += 2) {
        line.bytes.push_back(static_cast<std::uint8_t>(*ParseHexNumber(group.substr(i, 2))));
    }
    return true;
}

/// "0x0010 = 0xa5".
DumpLine ReadPlugInLine(std::string_view text) {
    DumpLine line{.offset = 0, .bytes = {}, .trouble = "\"" + Shortened(text, 60) + "\""};
    text.remove_prefix(std::min(FindEntry(text) + 2, text.size()));
    const std::size_t digits = LeadingHexDigits(text);
    const std::optional<std::size_t> offset = ParseHexNumber(text.substr(0, digits));
    text = WithoutLeadingBlanks(text.substr(digits));
    if (!offset || !text.starts_with('=')) {
        return line;
    }
    text = WithoutLeadingBlanks(text.substr(1));
    if (!BeginsWithHexPrefix(text) || text.size() > 4) {
        return line;
    }
    line.offset = *offset;
    line.trouble = text.size() == 2 ? "no byte" : "";
    TakeBytes(text.substr(2), line);
    return line;
}

/// "00000010: a55a 0102  .Z..": two blanks end the bytes.
DumpLine ReadXxdLine(std::string_view text, std::size_t offsetDigits) {
    DumpLine line{.offset = ParseHexNumber(text.substr(0, offsetDigits)).value_or(std::string_view::npos),
                  .bytes = {},
                  .trouble = {}};
    text = text.substr(offsetDigits + 1);
    text = text.substr(0, text.find("  "));
    while (!(text = WithoutLeadingBlanks(text)).empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        if (!TakeBytes(text.substr(0, end), line)) {
            break;
        }
        text.remove_prefix(end);
    }
    return line;
}

/// "00000010  a5 5a  01 02  |.Z..|", or the offset of the end alone.
DumpLine ReadHexdumpLine(std::string_view text, std::size_t offsetDigits) {
    DumpLine line{.offset = ParseHexNumber(text.substr(0, offsetDigits)).value_or(std::string_view::npos),
                  .bytes = {},
                  .trouble = {}};
    text = text.substr(offsetDigits);
    text = text.substr(0, text.find('|'));
    while (!(text = WithoutLeadingBlanks(text)).empty()) {
        const std::string_view group = text.substr(0, text.find(' '));
        if (group.size() > 2) {
            // Words have their bytes in an order of the machine that made the dump.
            line.trouble = "\"" + Shortened(group, 30) + "\"";
            break;
        }
        if (!TakeBytes(group, line)) {
            break;
        }
        text.remove_prefix(group.size());
    }
    return line;
}

DumpLine ReadLine(Form form, std::string_view text) {
    const std::size_t digits = LeadingHexDigits(text);
    switch (form) {
        case Form::Xxd:
            return ReadXxdLine(text, digits);
        case Form::Hexdump:
            return ReadHexdumpLine(text, digits);
        case Form::PlugIn:
            break;
    }
    return ReadPlugInLine(text);
}

const char* Example(Form form) {
    return form == Form::Xxd       ? "a line like \"00000010: a55a\""
           : form == Form::Hexdump ? "a line like \"00000010  a5 5a\""
                                   : "a line like \"0x0010 = 0xa5\"";
}

std::string OffsetText(std::size_t offset) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "offset 0x%04zx", offset);
    return text.data();
}

/// Takes the lines of a dump one after the other.
class Image {
  public:
    /// The rows up to `end` are as the last one was.
    void repeatUpTo(std::size_t end) {
        const std::size_t row = mLastRow;
        while (row > 0 && mBytes.size() < std::min(end, tables::kEepromImageSize)) {
            mBytes.push_back(mBytes[mBytes.size() - row]);
        }
    }
    void add(const std::vector<std::uint8_t>& bytes) {
        mBytes.insert(mBytes.end(), bytes.begin(), bytes.end());
        mLastRow = bytes.size();
    }
    std::size_t size() const { return mBytes.size(); }
    std::vector<std::uint8_t> take() { return std::move(mBytes); }

  private:
    std::vector<std::uint8_t> mBytes;
    std::size_t mLastRow = 0;
};

}  // namespace

bool IsEepromDump(std::string_view content) {
    const std::optional<std::string_view> first = Lines(content).next();
    if (!first) {
        return false;
    }
    const std::string_view head = first->substr(0, 200);
    // Nearly every file of raw bytes ends here, and costs nothing more.
    return std::none_of(head.begin(), head.end(),
                        [](char c) { return static_cast<unsigned char>(c) < ' '; }) &&
           Printable(head) == head && FormOf(*first);
}

EepromDump ReadEepromDump(std::string_view text) {
    Lines lines(text);
    Image image;
    std::optional<Form> form;
    bool repeats = false;
    while (const std::optional<std::string_view> next = lines.next()) {
        if (form && form != Form::PlugIn && *next == "*") {
            repeats = true;
            continue;
        }
        const std::optional<Form> ownForm = FormOf(*next);
        form = form ? form : ownForm;
        if (!form || form != ownForm) {
            return EepromDumpError{lines.number(), Example(form.value_or(Form::PlugIn)),
                                   "\"" + Shortened(*next, 60) + "\""};
        }
        const DumpLine line = ReadLine(*form, *next);
        if (!line.trouble.empty()) {
            return EepromDumpError{lines.number(), Example(*form), line.trouble};
        }
        if (repeats) {
            image.repeatUpTo(line.offset);
            repeats = false;
        }
        if (line.offset != image.size()) {
            return EepromDumpError{lines.number(), OffsetText(image.size()), OffsetText(line.offset)};
        }
        if (line.bytes.size() > tables::kEepromImageSize - image.size()) {
            return EepromDumpError{lines.number(), OffsetText(tables::kEepromImageSize) + " as the end",
                                   "more bytes"};
        }
        image.add(line.bytes);
    }
    if (image.size() != tables::kEepromImageSize) {
        return EepromDumpError{lines.number(), OffsetText(image.size()), "the end of the text"};
    }
    return image.take();
}

EepromFile ReadEepromFile(ImageBytes content) {
    EepromFile file;
    const std::string_view text(reinterpret_cast<const char*>(content.data()), content.size());
    if (IsEepromDump(text)) {
        EepromDump dump = ReadEepromDump(text);
        if (const auto* const error = std::get_if<EepromDumpError>(&dump)) {
            file.expected = "the dump of a whole EEPROM with " + error->expected + " in line " +
                            std::to_string(error->line) + " of the file";
            file.found = error->found;
            return file;
        }
        file.image = std::get<std::vector<std::uint8_t>>(std::move(dump));
        file.size = file.image.size();
    } else if (content.size() > tables::kEepromImageSize) {
        file.expected =
            "a file of at most " + std::to_string(tables::kEepromImageSize) + " bytes, or the text of a dump";
        file.found = std::to_string(content.size()) + " bytes";
    } else {
        file.image.assign(content.begin(), content.end());
        file.image.resize(tables::kEepromImageSize);
        file.size = content.size();
    }
    return file;
}

std::string EepromDumpText(ImageBytes image) {
    std::string text;
    for (std::size_t offset = 0; offset < image.size(); ++offset) {
        std::array<char, 32> line;
        const int length = std::snprintf(line.data(), line.size(), "0x%04zx = 0x%02x\n", offset,
                                         static_cast<unsigned>(image[offset]));
        text.append(line.data(), static_cast<std::size_t>(length));
    }
    return text;
}

}  // namespace formats
