#include "zvcam/views/Html.h"

#include <ostream>

#include "formats/PrintableText.h"
#include "zvcam/views/PageParts.h"

namespace zvcam {

namespace {

constexpr std::string_view kUnreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";

/// Text as part of an address.
std::string PercentEncoded(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        if (kUnreserved.find(c) != std::string_view::npos) {
            encoded += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            encoded += {'%', kDigits[byte >> 4], kDigits[byte & 0xF]};
        }
    }
    return encoded;
}

const char* ClassOf(HtmlTable::Column::Kind kind) {
    switch (kind) {
        case HtmlTable::Column::Kind::Number:
            return "number";
        case HtmlTable::Column::Kind::Code:
            return "code";
        case HtmlTable::Column::Kind::Values:
            return "values";
        case HtmlTable::Column::Kind::Text:
            break;
    }
    return "";
}

/// The search box. It stays hidden where no script runs, which is what makes it work.
Markup SearchBox(const Page& page) {
    Markup kinds = Element("option", {{"value", "all"}}, "everything");
    for (const auto& [kind, words] : page.kinds) {
        kinds += Element("option", {{"value", kind}}, words);
    }
    return Element("form", {{"id", "search"}, {"role", "search"}, {"hidden", "hidden"}},
                   Element("label", {{"for", "q"}}, "Search") +
                       Element("input", {{"id", "q"},
                                         {"type", "search"},
                                         {"placeholder", "words that a row has"},
                                         {"autocomplete", "off"},
                                         {"spellcheck", "false"},
                                         {"aria-describedby", "hits"},
                                         {"aria-keyshortcuts", "/"}}) +
                       Element("label", {{"for", "in"}}, "in") + Element("select", {{"id", "in"}}, kinds) +
                       Element("output", {{"id", "hits"}, {"aria-live", "polite"}}));
}

Markup Contents(const Page& page) {
    Markup items;
    for (const PageSection& section : page.sections) {
        items += Element("li", {}, Link("#" + section.id, section.title));
    }
    return Element("nav", {{"aria-labelledby", "contents"}},
                   Element("h2", {{"id", "contents"}}, "Contents") + Element("ol", {}, items));
}

Markup Main(const Page& page) {
    Markup content =
        Element("header", {},
                Element("p", {{"class", "about"}}, page.about) + Element("h1", {}, page.title) + page.lead);
    for (const PageSection& section : page.sections) {
        const std::string heading = section.id + "-heading";
        content += Element("section", {{"id", section.id}, {"aria-labelledby", heading}},
                           Element("h2", {{"id", heading}}, section.title) + section.content);
    }
    return Element("main", {{"id", "main"}, {"tabindex", "-1"}}, content);
}

}  // namespace

Markup::Markup(std::string_view text) {
    for (const char c : formats::Printable(text)) {
        switch (c) {
            case '&':
                mHtml += "&amp;";
                break;
            case '<':
                mHtml += "&lt;";
                break;
            case '>':
                mHtml += "&gt;";
                break;
            case '"':
                mHtml += "&quot;";
                break;
            case '\'':
                mHtml += "&#39;";
                break;
            default:
                mHtml += c;
        }
    }
}

Markup Element(std::string_view name, Attributes attributes, const Markup& content) {
    Markup element;
    std::string& html = element.mHtml;
    html.append("<").append(name);
    for (const auto& [attribute, value] : attributes) {
        if (!value.empty()) {
            html.append(" ").append(attribute).append("=\"").append(Markup(value).html()).append("\"");
        }
    }
    html += ">";
    if (name != "input") {
        html.append(content.mHtml).append("</").append(name).append(">");
    }
    // A line each, for those who read the file itself.
    if (name == "tr" || name == "section" || name == "path") {
        html += '\n';
    }
    return element;
}

Markup Preformatted(const std::vector<std::string>& lines) {
    Markup content;
    for (const std::string& line : lines) {
        content += Markup(line);
        content += Markup::LineEnd();
    }
    return Element("pre", {{"tabindex", "0"}}, content);
}

Markup Link(const std::string& target, const Markup& content) {
    return Element("a", {{"href", target}}, content);
}

std::string SearchTarget(std::string_view text) {
    return "#q=" + PercentEncoded(text);
}

std::string IdOf(std::string_view text) {
    std::string id;
    for (const char c : text) {
        const bool kept =
            c == '-' || (kUnreserved.find(c) != std::string_view::npos && c != '.' && c != '_' && c != '~');
        id += kept ? c : '-';
    }
    return id;
}

Markup Folded(const Markup& summary, const Markup& content, bool isLong) {
    return Element("details", {{"class", isLong ? "long" : ""}}, Element("summary", {}, summary) + content);
}

Markup Judged(Verdict verdict, const Markup& words) {
    const char* const name = verdict == Verdict::Good ? "good" : verdict == Verdict::Bad ? "bad" : "doubtful";
    const char* const mark = verdict == Verdict::Good  ? "\u2713"
                             : verdict == Verdict::Bad ? "\u2717"
                                                       : "\u26A0\uFE0E";
    constexpr const char* kNoBreakSpace = "\u00A0";
    return Element("span", {{"class", name}},
                   Element("span", {{"aria-hidden", "true"}}, mark) + kNoBreakSpace + words);
}

Markup Judged(const JudgedWords& words) {
    return words.verdict ? Judged(*words.verdict, words.words) : Markup(words.words);
}

Markup Paragraph(const Markup& words) {
    return Element("p", {}, words);
}

void HtmlTable::row(const std::vector<Markup>& cells, Attributes rowAttributes) {
    Markup content;
    for (std::size_t i = 0; i < mColumns.size(); ++i) {
        const char* const kind = ClassOf(mColumns[i].kind);
        const Markup cell = i < cells.size() ? cells[i] : Markup();
        const std::string heading = mStacked ? mColumns[i].heading : "";
        content += i == 0 ? Element("th", {{"scope", "row"}, {"class", kind}}, cell)
                          : Element("td", {{"class", kind}, {"data-heading", heading}}, cell);
    }
    mRows += Element("tr", rowAttributes, content);
}

Markup HtmlTable::markup() const {
    Markup headings;
    for (const Column& column : mColumns) {
        const bool isNumber = column.kind == Column::Kind::Number;
        headings += Element("th", {{"scope", "col"}, {"class", isNumber ? "number" : ""}}, column.heading);
    }
    return Element(
        "div", {{"class", "wide"}, {"role", "region"}, {"tabindex", "0"}, {"aria-label", mCaption}},
        Element("table", {{"class", mStacked ? "stacked" : ""}, {"data-kind", mKind}},
                Element("caption", {}, mCaption) + Element("thead", {}, Element("tr", {}, headings)) +
                    Element("tbody", {}, mRows)));
}

void WritePage(std::ostream& out, const Page& page) {
    out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src '"
        << kPageStyleHash << "'; script-src '" << kPageScriptHash << "'\">\n"
        << Element("title", {}, page.title + " \u00B7 " + page.about).html() << "\n<style>" << kPageStyle
        << "</style>\n</head>\n<body>\n"
        << Element("a", {{"class", "skip"}, {"href", "#main"}}, "Skip to the content").html() << '\n'
        << SearchBox(page).html() << '\n'
        << Contents(page).html() << '\n'
        << Main(page).html() << "\n<script>" << kPageScript << "</script>\n</body>\n</html>\n";
}

}  // namespace zvcam
