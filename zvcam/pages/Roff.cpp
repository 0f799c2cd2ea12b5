#include "zvcam/pages/Roff.h"

#include <algorithm>
#include <cctype>
#include <ostream>
#include <sstream>
#include <vector>

namespace zvcam {

namespace {

/// Text that means nothing but itself to roff.
std::string Plain(std::string_view text) {
    std::string plain;
    for (const char character : text) {
        switch (character) {
            case '\\':
                plain += "\\e";
                break;
            case '-':
                plain += "\\-";
                break;
            case '\'':
                plain += "\\(aq";
                break;
            case '`':
                plain += "\\(ga";
                break;
            case '^':
                plain += "\\(ha";
                break;
            case '~':
                plain += "\\(ti";
                break;
            default:
                plain += character;
        }
    }
    return plain;
}

/// A whole line of text: its first character opens no request.
std::string TextLine(std::string_view text) {
    return (text.starts_with('.') ? "\\&" : "") + Plain(text);
}

/// Roff as one argument of a macro: no macro itself, whatever it reads.
std::string Quoted(std::string_view roff) {
    std::string quoted;
    for (const char character : roff) {
        quoted += character == '"' ? "\\(dq" : std::string(1, character);
    }
    return "\"\\&" + quoted + "\"";
}

std::string MacroArgument(std::string_view text) {
    return Quoted(Plain(text));
}

/// "--json FILE", as the tag of a list.
std::string OptionTag(const Argument& option) {
    std::string tag;
    for (const std::string& name : option.names) {
        tag += (tag.empty() ? "Sy " : " , Sy ") + MacroArgument(name);
    }
    return option.value.empty() ? tag : tag + " Ar " + MacroArgument(option.value);
}

void PrintSynopsis(std::ostream& out, const Command& command) {
    out << ".Nm zvcam";
    std::istringstream words(command.path);
    for (std::string word; words >> word;) {
        out << " Cm " << MacroArgument(word);
    }
    out << '\n';
    for (const Argument& option : command.options) {
        out << (option.required ? "." : ".Op ") << OptionTag(option) << '\n';
    }
    for (const Argument& positional : command.positionals) {
        out << (positional.required ? "." : ".Op ") << "Ar " << MacroArgument(positional.value)
            << (positional.repeated ? " ..." : "") << '\n';
    }
}

/// "Needs --root." on a line of its own.
void PrintOthers(std::ostream& out, const char* what, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        out << what << " \\fB" << Plain(name) << "\\fP.\n";
    }
}

void PrintArguments(std::ostream& out, const Command& command) {
    out << ".Bl -tag -width Ds\n";
    for (const Argument& positional : command.positionals) {
        out << ".It Ar " << MacroArgument(positional.value) << '\n'
            << TextLine(positional.description) << ".\n";
    }
    for (const Argument& option : command.options) {
        out << ".It " << OptionTag(option) << '\n' << TextLine(option.description) << ".\n";
        PrintOthers(out, "Needs", option.needs);
        PrintOthers(out, "Excludes", option.excludes);
    }
    out << ".El\n";
}

/// Calls `text` and `code` with the parts of a line that stand outside and between backquotes. A link is its
/// words.
template <typename Text, typename Code>
void ForEachPart(std::string_view line, Text text, Code code) {
    std::string words;
    while (!line.empty()) {
        const char first = line.front();
        const std::size_t end = first == '`' ? line.find('`', 1) : line.find("](");
        const std::size_t target = first == '[' && end != std::string_view::npos ? line.find(')', end) : end;
        if (first == '`' && end != std::string_view::npos) {
            text(words);
            words.clear();
            code(line.substr(1, end - 1));
            line.remove_prefix(end + 1);
        } else if (first == '[' && target != std::string_view::npos) {
            words += line.substr(1, end - 1);
            line.remove_prefix(target + 1);
        } else {
            words += first;
            line.remove_prefix(1);
        }
    }
    text(words);
}

/// Running text, code in bold.
std::string Inline(std::string_view line) {
    std::string roff;
    ForEachPart(
        line, [&](std::string_view words) { roff += Plain(words); },
        [&](std::string_view code) { roff += "\\fB" + Plain(code) + "\\fP"; });
    return roff;
}

/// Running text on lines of its own, one a sentence: so roff knows where to space them.
std::string Sentences(std::string_view text) {
    std::string roff = (text.starts_with('.') ? "\\&" : "") + Inline(text);
    for (std::size_t end = roff.find(". "); end != std::string::npos; end = roff.find(". ", end)) {
        roff[++end] = '\n';
    }
    return roff + "\n";
}

std::string Capitalised(std::string text) {
    if (!text.empty()) {
        text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    }
    return text;
}

/// The cells of "| a | b |"; a bar in code parts no cells, and there "\\|" is one.
std::vector<std::string> Cells(std::string_view row) {
    std::vector<std::string> cells;
    std::string cell;
    bool isCode = false;
    for (const char character : row.substr(1)) {
        isCode ^= character == '`';
        if (character == '|' && isCode && cell.ends_with('\\')) {
            cell.back() = character;
        } else if (character == '|' && !isCode) {
            const std::size_t start = std::min(cell.find_first_not_of(' '), cell.size());
            cells.push_back(cell.substr(start, cell.find_last_not_of(' ') + 1 - start));
            cell.clear();
        } else {
            cell += character;
        }
    }
    return cells;
}

/// The pages' Markdown, line by line: what is open is closed when a line of another kind comes.
class Page {
  public:
    explicit Page(std::ostream& out) : mOut(out) {}

    void add(std::string_view line) {
        if (line.starts_with("```")) {
            open(mOpen == Block::Fenced ? Block::None : Block::Fenced);
        } else if (mOpen == Block::Fenced) {
            mOut << TextLine(line) << '\n';
        } else if (line.empty()) {
            endText();
            mIsNewParagraph = true;
        } else if (line.starts_with('#')) {
            addHeading(line);
        } else if (line.starts_with('|') || line.starts_with("  |")) {
            addRow(line.substr(line.find('|')));
        } else if (line.starts_with("    ") && (mIsNewParagraph || mOpen == Block::Example)) {
            addExample(line.substr(4));
        } else if (line.starts_with("- ")) {
            open(Block::List);
            mOut << ".It\n";
            mText = line.substr(2);
        } else {
            addText(line);
        }
    }

    void end() { open(Block::None); }

  private:
    enum class Block { None, Text, List, Table, Example, Fenced };

    /// Code may go on in the next line, so that a paragraph becomes roff as a whole.
    void endText() {
        if (!mText.empty()) {
            mOut << Sentences(mText);
            mText.clear();
        }
    }

    void open(Block block) {
        endText();
        mIsNewParagraph = false;
        if (mOpen == block) {
            return;
        }
        switch (mOpen) {
            case Block::List:
            case Block::Table:
                mOut << ".El\n";
                break;
            case Block::Example:
            case Block::Fenced:
                mOut << ".Ed\n";
                break;
            case Block::None:
            case Block::Text:
                break;
        }
        switch (block) {
            case Block::List:
                mOut << ".Bl -bullet -compact\n";
                break;
            case Block::Table:
                mOut << ".Bl -tag -width Ds\n";
                break;
            case Block::Example:
            case Block::Fenced:
                mOut << ".Bd -literal -offset indent\n";
                break;
            case Block::None:
            case Block::Text:
                break;
        }
        mOpen = block;
    }

    void addHeading(std::string_view line) {
        open(Block::None);
        const std::size_t level = line.find_first_not_of('#');
        std::string title(line.substr(level + 1));
        if (level == 1) {
            return;
        }
        if (level == 2) {
            std::transform(title.begin(), title.end(), title.begin(), [](char character) {
                return static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
            });
        }
        mOut << (level == 2 ? ".Sh " : ".Ss ") << MacroArgument(title) << '\n';
    }

    /// The first column becomes the tag of a list; the others follow, those after the second with their
    /// headings.
    void addRow(std::string_view line) {
        const std::vector<std::string> cells = Cells(line);
        if (mOpen != Block::Table) {
            open(Block::Table);
            mColumns = cells;
            return;
        }
        mIsNewParagraph = false;
        if (cells.empty() || cells.front().starts_with("---")) {
            return;
        }
        mOut << ".It No " << Quoted(Inline(cells.front())) << '\n';
        for (std::size_t i = 1; i < cells.size(); ++i) {
            if (!cells[i].empty()) {
                mOut << Sentences((i == 1 ? "" : Capitalised(mColumns.at(i)) + ": ") + cells[i] +
                                  (cells[i].ends_with('`') ? "" : "."));
            }
        }
    }

    void addExample(std::string_view line) {
        const bool isApart = mOpen == Block::Example && mIsNewParagraph;
        open(Block::Example);
        mOut << (isApart ? "\n" : "") << TextLine(line) << '\n';
    }

    void addText(std::string_view line) {
        if (!mText.empty()) {
            mText += ' ';
        } else {
            const bool isParagraph = mIsNewParagraph && mOpen != Block::None;
            open(Block::Text);
            mOut << (isParagraph ? ".Pp\n" : "");
        }
        mText += line.substr(line.find_first_not_of(' '));
    }

    std::ostream& mOut;
    Block mOpen = Block::None;
    bool mIsNewParagraph = false;
    std::string mText;                  ///< of the open paragraph or list item
    std::vector<std::string> mColumns;  ///< headings of the open table
};

}  // namespace

void PrintCommandsAsMdoc(std::ostream& out, std::span<const Command> commands) {
    for (const Command& command : commands) {
        if (command.path.empty()) {
            continue;
        }
        out << ".Ss " << MacroArgument("zvcam " + command.path) << '\n';
        if (!command.needsCommand) {
            PrintSynopsis(out, command);
            out << ".Pp\n";
        }
        out << TextLine(command.description) << ".\n";
        PrintArguments(out, command);
    }
}

void PrintMarkdownAsMdoc(std::ostream& out, std::string_view markdown) {
    Page page(out);
    std::istringstream lines{std::string(markdown)};
    for (std::string line; std::getline(lines, line);) {
        page.add(line);
    }
    page.end();
}

}  // namespace zvcam
