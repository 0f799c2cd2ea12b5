#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>

#include <gmock/gmock.h>

#include "virtualphone/TemporaryFolder.h"

// ZVCAM, FAKE_PLUGIN and NO_PLUGIN are file names, PHONES and SOURCE folders; the build defines them.

struct Result {
    int exitCode;
    std::string out;
    std::string error;
};

inline std::string ReadText(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream) << path << " is missing";
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// What was said on standard error; where an emulator runs the program, without its remark on a signal.
inline std::string ReadErrors(const std::filesystem::path& path) {
    std::string text = ReadText(path);
    if (text.starts_with("qemu: uncaught target signal ")) {
        text.erase(0, text.find('\n') + 1);
    }
    return text;
}

/// The exit status of a shell's command; of one that a signal ended, 128 and the signal's number.
inline int StatusOf(const std::string& command) {
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// A boot of the usual phone with the plug-in that is made for the tests.
inline const std::string kFake = "run phone.json --library '" FAKE_PLUGIN "' ";

/// Runs zvcam in a folder of its own, beside the phone files of the test.
class Zvcam : public testing::Test {
  protected:
    Zvcam() {
        std::filesystem::create_directory(file("tmp"));
        write("phone.json", R"({"name": "small", "faults": {"propertySet": ["refused"]}})");
    }

    /// Whatever happens, no temporary folder is left.
    ~Zvcam() override { EXPECT_TRUE(std::filesystem::is_empty(file("tmp"))); }

    /// How a shell's command begins that becomes zvcam, in the folder of the test or another one.
    std::string program(const std::filesystem::path& folder = {}) const {
        return "cd '" + (folder.empty() ? mPath : folder).string() + "' && umask 022 && TMPDIR='" +
               file("tmp").string() + "' exec '" ZVCAM "' ";
    }

    Result zvcam(const std::string& arguments, const std::filesystem::path& folder = {}) const {
        const int status = StatusOf(program(folder) + ">'" + file("out").string() + "' 2>'" +
                                    file("error").string() + "' " + arguments);
        return {status, ReadText(file("out")), ReadErrors(file("error"))};
    }

    std::filesystem::path file(const std::string& name) const { return mPath / name; }
    void write(const std::string& name, const std::string& text) const { std::ofstream(file(name)) << text; }

  private:
    virtualphone::TemporaryFolder mFolder;
    /// As a program sees it that works there: without links.
    const std::filesystem::path mPath = std::filesystem::canonical(mFolder.path());
};
