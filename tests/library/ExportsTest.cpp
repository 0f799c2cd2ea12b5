// What the library exports, and what it needs of others, read from the file as the loader reads it.

#include <algorithm>
#include <cstdlib>
#include <cxxabi.h>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <link.h>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

namespace {

using Names = std::set<std::string>;

class Library {
  public:
    explicit Library(const char* path) {
        std::ifstream file(path, std::ios::binary);
        mBytes.resize(std::filesystem::file_size(path));
        file.read(mBytes.data(), std::ssize(mBytes));
        const auto* const header = at<ElfW(Ehdr)>(0);
        const auto* const segments = at<ElfW(Phdr)>(header->e_phoff);
        mHasThreadLocals = std::any_of(segments, segments + header->e_phnum,
                                       [](const ElfW(Phdr) & segment) { return segment.p_type == PT_TLS; });
        const auto* const sections = at<ElfW(Shdr)>(header->e_shoff);
        for (const auto* section = sections; section != sections + header->e_shnum; ++section) {
            if (section->sh_type != SHT_DYNSYM) {
                continue;
            }
            const char* const names = at<char>(sections[section->sh_link].sh_offset);
            const auto* const symbols = at<ElfW(Sym)>(section->sh_offset);
            // The first symbol is none.
            for (std::size_t i = 1; i < section->sh_size / sizeof(ElfW(Sym)); ++i) {
                const auto binding = ELF64_ST_BIND(symbols[i].st_info);
                const char* const name = names + symbols[i].st_name;
                if (binding == STB_LOCAL) {
                    continue;  // of a section, for relocations within the library
                }
                if (symbols[i].st_shndx != SHN_UNDEF) {
                    mExported.insert(Demangled(name));
                } else if (binding != STB_WEAK) {  // a weak one may stay without a definition
                    mNeeded.insert(name);
                }
            }
        }
    }

    const Names& exported() const { return mExported; }  ///< as C++ writes them
    const Names& needed() const { return mNeeded; }      ///< as the linker knows them
    bool hasThreadLocals() const { return mHasThreadLocals; }

    static std::string Demangled(const char* name) {
        const std::unique_ptr<char, decltype(&std::free)> text(
            abi::__cxa_demangle(name, nullptr, nullptr, nullptr), std::free);
        return text == nullptr ? name : PlainStd(text.get());
    }

    /// Without the namespaces and marks by which a standard library tells its versions apart.
    static std::string PlainStd(std::string text) {
        for (const std::string_view mark : {"__cxx11::", "__1::", "[abi:cxx11]"}) {
            for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
                text.erase(at, mark.size());
            }
        }
        return text;
    }

  private:
    template <typename Record>
    const Record* at(std::size_t offset) const {
        return reinterpret_cast<const Record*>(mBytes.data() + offset);
    }

    std::vector<char> mBytes;
    Names mExported;
    Names mNeeded;
    bool mHasThreadLocals = false;
};

Names LinesOf(const char* path) {
    std::ifstream file(path);
    Names lines;
    for (std::string line; std::getline(file, line);) {
        lines.insert(line);
    }
    return lines;
}

/// Whether the C or the C++ library has a symbol.
bool IsOfTheLanguage(const std::string& symbol) {
#ifdef _LIBCPP_VERSION
    constexpr const char* kLibrary = "libc++.so.1";
#else
    constexpr const char* kLibrary = "libstdc++.so.6";
#endif
    static void* const library = dlopen(kLibrary, RTLD_NOW);  // and what it needs itself
    return dlsym(library, symbol.c_str()) != nullptr;
}

/// Whether a sanitizer's instrumentation asks for a symbol.
bool IsOfSanitizers(const std::string& symbol, const std::string& text) {
#ifdef SANITIZED
    return symbol.starts_with("__asan_") || symbol.starts_with("__ubsan_") ||
           text.starts_with("typeinfo for ");
#else
    static_cast<void>(symbol);
    static_cast<void>(text);
    return false;
#endif
}

/// Scope and name of a function, without result, arguments and template arguments.
std::string FunctionOf(std::string text) {
    text.resize(std::min(text.find('('), text.size()));
    if (const std::size_t arguments = text.rfind('<'); text.ends_with('>')) {
        text.resize(arguments);
    }
    return text.substr(text.rfind(' ') + 1);
}

TEST(Exports, AreTheOperationsOfTheClassUnderTheirDeclaredTypes) {
    EXPECT_THAT(Library(PLUGIN).exported(), testing::ContainerEq(LinesOf(TESTS "/exports.txt")));
}

TEST(Exports, NeedOnlyTheLanguageAndNamedPlatformOperations) {
    const Names platform = LinesOf(TESTS "/platform.txt");
    const Library library(PLUGIN);
    Names others;
    for (const std::string& symbol : library.needed()) {
        const std::string text = Library::Demangled(symbol.c_str());
        if (!platform.contains(FunctionOf(text)) && !IsOfTheLanguage(symbol) &&
            !IsOfSanitizers(symbol, text)) {
            others.insert(text);
        }
    }
    EXPECT_THAT(others, testing::IsEmpty());
}

// Memory of a thread that goes away with an unloaded library is what leak checkers stumble over.
TEST(Exports, NoThreadLocalMemory) {
    EXPECT_FALSE(Library(PLUGIN).hasThreadLocals());
}

}  // namespace
