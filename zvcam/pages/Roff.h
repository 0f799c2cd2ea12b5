#pragma once

#include <iosfwd>
#include <span>
#include <string>
#include <string_view>

#include "zvcam/pages/CommandLine.h"

namespace zvcam {

/// Commands and their options as the body of a manual page, in mdoc.
void PrintCommandsAsMdoc(std::ostream& out, std::span<const Command> commands);

/// A page of the documentation as the body of a manual page, in mdoc. Its title is left to the page's frame.
/// It understands what those pages are written in: headings, paragraphs, lists, tables, indented examples,
/// and within a line `code` and [links](target).
void PrintMarkdownAsMdoc(std::ostream& out, std::string_view markdown);

}  // namespace zvcam
