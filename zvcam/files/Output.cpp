#include "zvcam/files/Output.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "virtualphone/InputFile.h"

namespace zvcam {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void ThrowUnwritable(const std::string& name, int error) {
    throw std::runtime_error("cannot write " + name + ": " + std::generic_category().message(error));
}

void PrintTo(std::ostream& out, const std::string& name, const Print& print) {
    errno = 0;
    print(out);
    if (!out.flush()) {
        ThrowUnwritable(name, errno);
    }
}

}  // namespace

Draft::Draft(const fs::path& target, std::string name)
    : mPath(target.string() + ".XXXXXX"), mName(std::move(name)) {
    const int file = mkstemp(mPath.data());
    if (file < 0) {
        ThrowUnwritable(mName, errno);
    }
    close(file);
}

Draft::~Draft() {
    if (!mPath.empty()) {
        unlink(mPath.c_str());
    }
}

void Draft::become(const fs::path& target, fs::perms permissions) {
    std::error_code error;
    fs::permissions(mPath, permissions, error);
    if (!error) {
        fs::rename(mPath, target, error);
    }
    if (error) {
        throw std::runtime_error("cannot write " + mName + ": " + error.message());
    }
    mPath.clear();
}

fs::perms NewFilePermissions() {
    const mode_t mask = umask(0);
    umask(mask);
    return static_cast<fs::perms>(0666U & ~mask);
}

void PrintOut(const Print& print) {
    PrintTo(std::cout, "standard output", print);
}

std::vector<std::uint8_t> ReadFile(const std::string& file, std::string_view expected) {
    virtualphone::FileContent content = virtualphone::ReadInput(file);
    if (!content.error.empty()) {
        throw std::runtime_error(virtualphone::InputName(file) + ": expected " + std::string(expected) +
                                 ", got " + content.instead());
    }
    return std::move(content.bytes);
}

void WriteFile(const std::string& path, const Print& print) {
    if (path == "-") {
        PrintOut(print);
        return;
    }
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        errno = 0;
        std::ofstream file(path, std::ios::binary);
        if (!file) {
            ThrowUnwritable(path, errno);
        }
        PrintTo(file, path, print);
        return;
    }
    // Where the path is a link, the file that it leads to is the one that changes.
    const fs::path target = fs::exists(status) ? fs::canonical(path) : fs::path(path);
    if (fs::exists(status) && access(target.c_str(), W_OK) != 0) {
        ThrowUnwritable(path, errno);
    }
    Draft draft(target, path);
    std::ofstream file(draft.path(), std::ios::binary);
    PrintTo(file, path, print);
    file.close();
    if (!file) {
        ThrowUnwritable(path, errno);
    }
    draft.become(target, fs::exists(status) ? status.permissions() : NewFilePermissions());
}

void WriteFile(const std::string& path, std::span<const std::uint8_t> bytes) {
    WriteFile(path, [&](std::ostream& out) {
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    });
}

void CheckIsNoInput(const std::string& path, const std::vector<fs::path>& inputs) {
    for (const fs::path& input : inputs) {
        if (path == "-" || input.empty()) {
            continue;
        }
        std::error_code error;
        if (fs::equivalent(path, input, error) && !error) {
            throw std::runtime_error("cannot write " + path + ": the run reads it");
        }
        const fs::path relative = fs::is_directory(path, error) ? fs::proximate(input, path, error) : "";
        if (!relative.empty() && *relative.begin() != "..") {
            throw std::runtime_error("cannot write " + path + ": the run reads what lies there");
        }
    }
}

void CheckMayReplace(const fs::path& path, bool force) {
    std::error_code error;
    if (path != "-" && fs::is_directory(path, error)) {
        throw std::runtime_error("cannot write " + path.string() + ": expected a file, got a folder");
    }
    // A pipe or a device stays one.
    if (!force && path != "-" && fs::exists(fs::symlink_status(path, error)) &&
        !fs::is_other(fs::status(path, error))) {
        throw std::runtime_error("cannot write " + path.string() + ": it exists; --force replaces it");
    }
}

void CheckOutputs(const std::vector<std::string>& outputs, const std::vector<std::string>& inputs,
                  bool force) {
    for (auto output = outputs.begin(); output != outputs.end(); ++output) {
        if (output->empty()) {
            continue;
        }
        CheckIsNoInput(*output, {inputs.begin(), inputs.end()});
        if (std::any_of(outputs.begin(), output, [&](const std::string& other) {
                return !other.empty() &&
                       fs::absolute(other).lexically_normal() == fs::absolute(*output).lexically_normal();
            })) {
            throw std::runtime_error("cannot write " + *output + ": another output goes there");
        }
        CheckMayReplace(*output, force);
    }
}

}  // namespace zvcam
