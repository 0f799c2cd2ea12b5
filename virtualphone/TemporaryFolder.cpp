#include "virtualphone/TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace virtualphone {

TemporaryFolder::TemporaryFolder() {
    std::string path = (std::filesystem::temp_directory_path() / "virtualphone-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) {
        throw std::filesystem::filesystem_error("cannot make a temporary folder", path,
                                                std::error_code(errno, std::generic_category()));
    }
    mPath = path;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
}

}  // namespace virtualphone
