#include "calibration/FileAccess.h"

#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>

#include "platforminfo/UniqueFd.h"
#include "tables/PublishedFiles.h"

std::optional<std::vector<unsigned char>> ReadCalibrationFile(const char* path) {
    const UniqueFd file = OpenRegularFile(path, O_RDONLY);
    struct stat status {};
    if (!file.valid() || fstat(file.get(), &status) != 0 ||
        static_cast<std::uint64_t>(status.st_size) > tables::kLargestCalibrationFile) {
        return std::nullopt;
    }
    std::vector<unsigned char> bytes(static_cast<std::size_t>(status.st_size));
    bytes.resize(ReadUpTo(file.get(), bytes.data(), bytes.size()));
    return bytes;
}
