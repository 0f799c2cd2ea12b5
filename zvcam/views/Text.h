#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "formats/Hex.h"
#include "formats/PrintableText.h"
#include "record/BootRecord.h"
#include "record/TagValues.h"

namespace zvcam {

/// The shortest decimal text that reads back as the same single-precision number.
std::string FloatText(float number);

/// The name of a published tag, else its number.
std::string TagName(std::uint32_t tag);

using formats::HexNumber;
using formats::Printable;
using record::ModeText;

/// "1 byte", "2 bytes".
std::string Counted(std::size_t count, std::string_view noun);

/// "a", "a and b", "a, b and c".
std::string Listed(const std::vector<std::string>& texts);

/// One word of a shell, whatever it holds: 'it'\''s'.
std::string ShellQuoted(std::string_view text);

/// "; near are \"a\" and \"b\"", to go behind a complaint about a name; empty where none is.
std::string NearWords(const std::vector<std::string>& names);

/// What a blob is at a glance.
struct BlobGlance {
    std::string text;  ///< "4096 bytes of 0x15", "216 bytes: 00 00 00 40 ... and 200 more"
    bool whole;        ///< the text says every byte
};
BlobGlance GlanceAt(std::span<const std::uint8_t> bytes);
/// Its text alone.
std::string BlobText(std::span<const std::uint8_t> bytes);

/// Nanoseconds as milliseconds: "33.333".
std::string Milliseconds(std::int64_t nanoseconds);

/// How bad something is.
enum class Verdict { Good, Doubtful, Bad };

/// Words that judge: a terminal paints them, a page marks them.
struct JudgedWords {
    std::string words;
    std::optional<Verdict> verdict = {};  ///< none: neither good nor bad
};

/// What a terminal can show.
struct Style {
    bool colour = false;

    std::string judged(Verdict verdict, std::string_view text) const {
        return verdict == Verdict::Good ? good(text) : verdict == Verdict::Bad ? bad(text) : doubtful(text);
    }
    std::string judged(const JudgedWords& words) const {
        return words.verdict ? judged(*words.verdict, words.words) : words.words;
    }

    std::string bad(std::string_view text) const { return painted("31", text); }
    std::string doubtful(std::string_view text) const { return painted("33", text); }
    std::string good(std::string_view text) const { return painted("32", text); }
    std::string bold(std::string_view text) const { return painted("1", text); }

  private:
    std::string painted(const char* code, std::string_view text) const {
        return colour ? "\x1B[" + std::string(code) + "m" + std::string(text) + "\x1B[0m" : std::string(text);
    }
};

/// Rows whose columns line up, each as wide as its widest text; the last one stays ragged.
class Table {
  public:
    /// @return the row, which may grow until the next one.
    std::vector<std::string>& row(std::vector<std::string> cells) {
        return mRows.emplace_back(std::move(cells));
    }
    /// Prints the rows behind so many blanks, the columns two blanks apart.
    void print(std::ostream& out, std::size_t indent) const;

  private:
    std::vector<std::vector<std::string>> mRows;
};

}  // namespace zvcam
