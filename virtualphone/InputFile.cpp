#include "virtualphone/InputFile.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

namespace virtualphone {

namespace fs = std::filesystem;

FileContent ReadWholeFile(const fs::path& path, bool regularOnly) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) {
        return {.bytes = {}, .error = error ? error.message() : "No such file or directory"};
    }
    if (fs::is_directory(status)) {
        return {.bytes = {}, .error = "a folder"};
    }
    // Opening a pipe could wait for ever.
    if (regularOnly && !fs::is_regular_file(status)) {
        return {.bytes = {}, .error = "neither a file nor a folder"};
    }
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        return {.bytes = {}, .error = std::generic_category().message(errno)};
    }
    FileContent content;
    std::array<char, 65536> block;
    while (stream.read(block.data(), block.size()) || stream.gcount() > 0) {
        content.bytes.insert(content.bytes.end(), block.data(), block.data() + stream.gcount());
        if (content.bytes.size() > kLargestFile) {
            return {.bytes = {}, .error = "more than " + std::to_string(kLargestFile) + " bytes"};
        }
    }
    if (stream.bad()) {
        return {.bytes = {}, .error = "a read error"};
    }
    return content;
}

}  // namespace virtualphone
