#include "zvcam/files/CalibrationFolder.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "tables/PublishedFiles.h"
#include "virtualphone/InputFile.h"

namespace zvcam {

namespace fs = std::filesystem;

analysis::CalibrationFolder ReadCalibrationFolder(const std::string& path) {
    analysis::CalibrationFolder folder;
    std::error_code error;
    fs::directory_iterator entry(path, error);
    // The iterator goes in the order of the directory, as the plug-in does.
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const bool considered = tables::IsDualCalibrationFileName(name);
        const bool stabiliser = name == fs::path(tables::kOisFilePath).filename();
        if (!considered && !stabiliser) {
            folder.others.push_back(name);
            continue;
        }
        const virtualphone::FileContent content = virtualphone::ReadWholeFile(entry->path(), true);
        analysis::CalibrationFolder::File file{.name = name, .content = {}};
        if (content.error.empty()) {
            file.content = analysis::ContentOfCalibrationFile(content.bytes);
        } else {
            file.content.trouble = content.error;
        }
        if (considered) {
            folder.considered.push_back(std::move(file));
        } else {
            folder.stabiliser = std::move(file);
        }
    }
    if (error) {
        throw std::runtime_error(path + ": expected a folder that can be read, got " + error.message());
    }
    std::sort(folder.others.begin(), folder.others.end());
    return folder;
}

}  // namespace zvcam
