#pragma once

#include <cstddef>

namespace zvcam {

/// Lets the program end in one line where memory runs out: keeps some back, which whoever has to unwind from
/// there may use up. A program calls it once, first.
void KeepMemoryBack();

/// Makes sure that so many files may be open at a time, as far as the process may say so itself.
/// @throws std::runtime_error where fewer may.
void ExpectOpenFiles(std::size_t count);

}  // namespace zvcam
