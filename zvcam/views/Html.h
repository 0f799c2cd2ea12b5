#pragma once

#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "zvcam/views/Text.h"

/// Pages that open from disk, in one file: elements, searchable tables, and the shell around them.
namespace zvcam {

/// A piece of a page. Text becomes one by being escaped, so that nothing that a phone says can turn into an
/// element, an attribute or a script; elements come from `Element` alone.
///
///     Element("p", {{"class", "bad"}}, "read " + Element("b", {}, module.name))
class Markup {
  public:
    Markup() = default;
    /// Escapes, and shows what does not print as `Printable` does.
    Markup(std::string_view text);
    Markup(const char* text) : Markup(std::string_view(text)) {}
    Markup(const std::string& text) : Markup(std::string_view(text)) {}

    bool empty() const { return mHtml.empty(); }
    const std::string& html() const { return mHtml; }

    /// The end of a line, which text cannot hold.
    static Markup LineEnd() {
        Markup end;
        end.mHtml = "\n";
        return end;
    }

    Markup& operator+=(const Markup& other) {
        mHtml += other.mHtml;
        return *this;
    }
    friend Markup operator+(Markup left, const Markup& right) { return std::move(left += right); }

  private:
    friend Markup Element(std::string_view, std::initializer_list<std::pair<std::string_view, std::string>>,
                          const Markup&);
    std::string mHtml;
};

/// Attributes of an element by name. A value is escaped; an attribute with an empty value is left out.
using Attributes = std::initializer_list<std::pair<std::string_view, std::string>>;

/// An element of HTML or SVG. Those of HTML that have no end tag (img, meta) are not for this.
Markup Element(std::string_view name, Attributes attributes = {}, const Markup& content = {});

/// Lines of code or of values, as they are. They scroll where they are many.
Markup Preformatted(const std::vector<std::string>& lines);

/// A link; `target` starts with "#" on the page itself.
Markup Link(const std::string& target, const Markup& content);

/// The target that opens a page with a search for this text: "#q=fuseID".
std::string SearchTarget(std::string_view text);

/// The text as the value of an id: "back-main" of "back main".
std::string IdOf(std::string_view text);

/// What stands behind a fold.
/// @param summary what is seen of it when it is closed.
/// @param isLong stays folded on paper too.
Markup Folded(const Markup& summary, const Markup& content, bool isLong = false);

/// Words with a mark and a colour: "✗ LSC broken" for bad ones.
Markup Judged(Verdict verdict, const Markup& words);
Markup Judged(const JudgedWords& words);

Markup Paragraph(const Markup& words);

/// A table. The first cell of each row is its heading. One that is searchable stands in a section itself, not
/// deeper.
class HtmlTable {
  public:
    /// Numbers are set flush right, Code (an id, an offset) in a fixed width on one line, Values (which may
    /// be long) in a fixed width and broken anywhere.
    struct Column {
        std::string heading;
        enum class Kind { Text, Number, Code, Values } kind = Kind::Text;
    };

    HtmlTable(std::string caption, std::vector<Column> columns)
        : mCaption(std::move(caption)), mColumns(std::move(columns)) {}

    /// Makes the page's search box filter the rows.
    /// @param kind what a row is, "property": a search can be confined to one kind.
    HtmlTable& searchable(std::string kind) {
        mKind = std::move(kind);
        return *this;
    }

    /// Makes a row stand as lines "heading: value" where the page is narrow: for tables whose rows are read
    /// by themselves, and whose values mean nothing without their heading.
    HtmlTable& stacked() {
        mStacked = true;
        return *this;
    }

    /// @param cells one a column; those that are left out at the end are empty.
    /// @param rowAttributes class "error" marks what went wrong; "data-kind" names further kinds that the row
    /// is of, parted by blanks.
    void row(const std::vector<Markup>& cells, Attributes rowAttributes = {});

    Markup markup() const;

  private:
    std::string mCaption;
    std::vector<Column> mColumns;
    std::string mKind;
    bool mStacked = false;
    Markup mRows;
};

/// A part of a page that its table of contents names.
struct PageSection {
    std::string id;  ///< unique on the page; letters, digits and "-"
    std::string title;
    Markup content;
};

/// A whole page.
struct Page {
    std::string title;  ///< "halcyrion", its heading and the browser's tab
    std::string about;  ///< what made it: "zvcam run"
    Markup lead;        ///< what a reader should know first
    std::vector<PageSection> sections;
    /// Kinds of rows that a search can be confined to, as the tables name them; with their words in the
    /// plural.
    std::vector<std::pair<std::string, std::string>> kinds;
};

/// Writes a page with its style and script. It needs nothing else, asks no network, and tells a browser to
/// run no other script.
void WritePage(std::ostream& out, const Page& page);

}  // namespace zvcam
