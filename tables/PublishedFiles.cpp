#include "tables/PublishedFiles.h"

#include <algorithm>
#include <array>

#include "tables/CameraModules.h"
#include "tables/CameraPairs.h"

namespace tables {

namespace {

constexpr std::array<PublishedFile, 3> kFiles = {{
    {kDualCameraPairs[0].dumpPath, false, operation::DualCameraDataDumpFile,
     "calibration block of wide and ultra-wide; from a persist file whose fuse ids match, or from the golden "
     "file"},
    {kDualCameraPairs[1].dumpPath, false, operation::DualCameraDataDumpFile,
     "calibration block of wide and tele; from a persist file whose fuse ids match, or from the golden file"},
    {kEepromDumpPath, true, operation::DumpEepromRawData,
     "a module's memory, `0x0010 = 0xa5` a line; only when a property asks for it"},
}};
static_assert(kFiles.size() == kDualCameraPairs.size() + 1);

bool Names(const PublishedFile& row, std::string_view path) {
    if (!row.perRole) {
        return path == row.path;
    }
    const std::string_view start(row.path);
    return path.starts_with(start) && std::any_of(kModuleRoles.begin(), kModuleRoles.end(),
                                                  [name = path.substr(start.size())](const ModuleRole& role) {
                                                      return name == role.name;
                                                  });
}

}  // namespace

std::span<const PublishedFile> PublishedFiles() {
    return kFiles;
}

const PublishedFile* FindPublishedFile(std::string_view path) {
    const auto* const found = std::find_if(kFiles.begin(), kFiles.end(),
                                           [=](const PublishedFile& row) { return Names(row, path); });
    return found == kFiles.end() ? nullptr : found;
}

}  // namespace tables
