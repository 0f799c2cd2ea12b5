#pragma once

#include <string_view>

/// What every page carries: page.css and page.js, word for word.
namespace zvcam {

extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;
/// "sha256-..." as a content security policy names them, so that a browser takes no other style or script.
extern const std::string_view kPageStyleHash;
extern const std::string_view kPageScriptHash;

}  // namespace zvcam
