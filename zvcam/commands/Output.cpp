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

/// A file that disappears unless it takes the place of another.
class Draft {
  public:
    /// Beside the file that it is to become, so that it can take its place in one step.
    Draft(const fs::path& target, const std::string& name) : mPath(target.string() + ".XXXXXX"), mName(name) {
        const int file = mkstemp(mPath.data());
        if (file < 0) {
            ThrowUnwritable(name, errno);
        }
        close(file);
    }
    ~Draft() {
        if (!mPath.empty()) {
            unlink(mPath.c_str());
        }
    }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    const std::string& path() const { return mPath; }

    void become(const fs::path& target, fs::perms permissions) {
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

  private:
    std::string mPath;
    std::string mName;
};

std::string_view Environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// What a new file's permissions are by the process's mask.
fs::perms NewFilePermissions() {
    const mode_t mask = umask(0);
    umask(mask);
    return static_cast<fs::perms>(0666U & ~mask);
}

}  // namespace

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
        std::error_code error;
        if (path != "-" && !input.empty() && fs::equivalent(path, input, error) && !error) {
            throw std::runtime_error("cannot write " + path + ": the run reads it");
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
