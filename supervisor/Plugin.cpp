#include "supervisor/Plugin.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <dlfcn.h>
#include <exception>
#include <link.h>
#include <new>
#include <span>
#include <system_error>

#include "formats/Hex.h"
#include "virtualphone/InputFile.h"

// A member function is called as what it is to the linker: a function with `this` as its first argument.
// Clang's sanitizer compares C++ types and objects.
#if defined(__clang__)
#define CALLS_BY_LINKER_NAME __attribute__((no_sanitize("function")))
#else
#define CALLS_BY_LINKER_NAME
#endif

namespace supervisor {

namespace {

/// The message of the latest failure of the loader.
std::string LoaderMessage(const std::string& otherwise) {
    const char* message = dlerror();
    return message == nullptr ? otherwise : message;
}

template <typename Function>
Function Find(void* handle, const char* symbol) {
    void* address = dlsym(handle, symbol);
    if (address == nullptr) {
        throw PluginError(LoaderMessage(std::string("the plug-in's ") + symbol + " is null"));
    }
    return reinterpret_cast<Function>(address);
}

std::string LowerHex(std::span<const std::uint8_t> bytes) {
    std::string text = formats::UpperHex(bytes);
    std::transform(text.begin(), text.end(), text.begin(), [](char digit) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(digit)));
    });
    return text;
}

/// What a text or a description of an ELF note takes: it is filled up to whole words.
std::size_t FilledUp(std::size_t size) {
    return (size + 3) / 4 * 4;
}

/// The build id among ELF notes, in lower-case hexadecimal; empty where there is none.
std::string BuildIdAmong(std::span<const std::uint8_t> notes) {
    ElfW(Nhdr) note;
    for (std::size_t at = 0; at + sizeof note <= notes.size();) {
        std::memcpy(&note, &notes[at], sizeof note);
        const std::size_t name = at + sizeof note;
        const std::size_t id = name + FilledUp(note.n_namesz);
        at = id + FilledUp(note.n_descsz);
        if (at > notes.size()) {
            break;
        }
        if (note.n_type == NT_GNU_BUILD_ID && note.n_namesz == sizeof ELF_NOTE_GNU &&
            std::memcmp(&notes[name], ELF_NOTE_GNU, sizeof ELF_NOTE_GNU) == 0) {
            return LowerHex(notes.subspan(id, note.n_descsz));
        }
    }
    return "";
}

/// The build id of a loaded library.
std::string BuildIdOfLoaded(void* handle) {
    const link_map* map = nullptr;
    const ElfW(Phdr)* headers = nullptr;
    const int count = dlinfo(handle, RTLD_DI_PHDR, &headers);
    if (count <= 0 || dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0) {
        return "";
    }
    for (const ElfW(Phdr) & header : std::span(headers, static_cast<std::size_t>(count))) {
        if (header.p_type != PT_NOTE) {
            continue;
        }
        const std::span notes(reinterpret_cast<const std::uint8_t*>(map->l_addr + header.p_vaddr),
                              header.p_memsz);
        if (std::string id = BuildIdAmong(notes); !id.empty()) {
            return id;
        }
    }
    return "";
}

}  // namespace

void Plugin::Unload::operator()(void* handle) const {
    dlclose(handle);
}

std::filesystem::path Plugin::DefaultLibrary() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) {
        throw PluginError("the plug-in beside this program cannot be found without /proc: expected its path");
    }
    return program.parent_path().parent_path() / "lib" / "libcameraplatforminfozelvan.so";
}

std::optional<std::string> Plugin::BuildIdOf(const std::filesystem::path& library) {
    const virtualphone::FileContent content = virtualphone::ReadWholeFile(library, /*regularOnly=*/true);
    const std::span<const std::uint8_t> bytes = content.bytes;
    ElfW(Ehdr) elf;
    if (bytes.size() < sizeof elf) {
        return std::nullopt;
    }
    std::memcpy(&elf, bytes.data(), sizeof elf);
    constexpr int kClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
    if (std::memcmp(elf.e_ident, ELFMAG, SELFMAG) != 0 || elf.e_ident[EI_CLASS] != kClass) {
        return std::nullopt;
    }
    const std::size_t start = std::min<std::size_t>(elf.e_phoff, bytes.size());
    ElfW(Phdr) header;
    const std::size_t count = std::min((bytes.size() - start) / sizeof header, std::size_t{elf.e_phnum});
    for (std::size_t i = 0; i < count; ++i) {
        std::memcpy(&header, &bytes[start + i * sizeof header], sizeof header);
        if (header.p_type == PT_NOTE && header.p_offset <= bytes.size() &&
            header.p_filesz <= bytes.size() - header.p_offset) {
            if (std::string id = BuildIdAmong(bytes.subspan(header.p_offset, header.p_filesz)); !id.empty()) {
                return id;
            }
        }
    }
    return "";
}

Plugin::Plugin(const std::filesystem::path& library)
    // Absolute: a bare name would send the loader through the system's own folders.
    : mLibrary(std::filesystem::absolute(library)), mHandle(dlopen(mLibrary.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!mHandle) {
        throw PluginError(LoaderMessage("cannot load " + library.string()));
    }
    mCreateInstance = Find<void* (*)()>(mHandle.get(), "_ZN24CameraPlatformInfoZelvan14CreateInstanceEv");
    mExposureModuleInfo =
        Find<void (*)(void*)>(mHandle.get(), "_ZN24CameraPlatformInfoZelvan18ExposureModuleInfoEv");
}

record::PluginIdentity Plugin::identity() const {
    return {.path = mLibrary.string(), .buildId = BuildIdOfLoaded(mHandle.get())};
}

CALLS_BY_LINKER_NAME std::optional<std::string> Plugin::run() const {
    try {
        mExposureModuleInfo(mCreateInstance());
    } catch (const std::bad_alloc&) {
        return "there is not enough memory";
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "an exception that is no std::exception";
    }
    return std::nullopt;
}

}  // namespace supervisor
