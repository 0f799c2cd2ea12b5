#include "zvcam/commands/Output.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

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

std::string_view Environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
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

Style OutputStyle() {
    const std::string_view noColour = Environment("NO_COLOR");
    const std::string_view terminal = Environment("TERM");
    return {.colour =
                noColour.empty() && !terminal.empty() && terminal != "dumb" && isatty(STDOUT_FILENO) == 1};
}

}  // namespace zvcam
