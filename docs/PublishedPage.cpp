// Prints docs/published.md from the lists in tables/; scripts/renew-published stores it.

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "tables/CameraDevices.h"
#include "tables/CameraModules.h"
#include "tables/CameraPairs.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"
#include "tables/PublishedTags.h"

namespace {

using namespace tables;

std::string Code(const std::string& text) {
    return "`" + text + "`";
}

void Row(const std::vector<std::string>& cells) {
    std::string line = "|";
    for (const std::string& cell : cells) {
        line += " " + cell + " |";
    }
    std::puts(line.c_str());
}

void Head(const std::vector<std::string>& cells) {
    std::puts("");
    Row(cells);
    Row(std::vector<std::string>(cells.size(), "---"));
}

std::string OfRole(int roleId) {
    const ModuleRole* const role = FindModuleRole(roleId);
    return role == nullptr ? "" : " (" + std::to_string(roleId) + ", " + role->name + ")";
}

/// Properties of one operation that say the same of several roles share a row.
void Properties() {
    std::puts("## System properties");
    Head({"property", "set by", "value"});
    const auto properties = PublishedProperties();
    for (std::size_t i = 0; i < properties.size();) {
        const PublishedProperty& first = properties[i];
        std::string names;
        for (; i < properties.size() && properties[i].value == first.value; ++i) {
            names += (names.empty() ? "" : ", ") + Code(properties[i].name) + OfRole(properties[i].roleId);
        }
        Row({names, Code(first.operation.name), first.value});
    }
    std::printf(
        "\nRead are %s (a number other than 0 asks for the EEPROM dumps), %s\n"
        "(%s switches photo styles and the bokeh MD mode off) and the fuse id properties.\n",
        Code(kEepromDumpProperty).c_str(), Code(kThemeProperty).c_str(), Code(kThemeNoTesmor).c_str());
}

void Files() {
    std::puts("\n## Files");
    Head({"file", "written by", "content"});
    for (const PublishedFile& file : PublishedFiles()) {
        Row({Code(std::string(file.path) + (file.perRole ? "<role name>" : "")), Code(file.operation.name),
             file.content});
    }
    std::printf("\nPersist files lie in %s, golden files are", Code(kPersistFolder).c_str());
    for (const DualCameraCalDataInfo& pair : kDualCameraPairs) {
        std::printf("%s %s", &pair == kDualCameraPairs.data() ? "" : " and", Code(pair.goldenPath).c_str());
    }
    std::puts(".");
}

void Tags() {
    std::puts("\n## Static metadata tags\n");
    std::string roles;
    std::map<int, const char*> names;
    for (const CameraDevice& device : kCameraDevices) {
        names[device.camera.roleId] = device.camera.drvName;
    }
    for (const auto& [roleId, name] : names) {
        const std::string text(name);
        roles += (roles.empty() ? "" : ", ") + std::to_string(roleId) + " " +
                 text.substr(sizeof("SENSOR_DRVNAME_HALCYRION_") - 1);
    }
    std::printf("Devices are named by their role: %s.\n", roles.c_str());
    std::puts(
        "No device of this phone has the roles 3, 40, 80 and 81. \"All\" means every device whose numbers "
        "the\n"
        "tables know; a physical sensor is looked up under its sensor id (see\n"
        "[architecture](architecture.md#roles-devices-sensors)).");
    Head({"tag", "name", "type", "devices", "set by", "value"});
    for (const PublishedTag& tag : PublishedTags()) {
        char number[16];
        std::snprintf(number, sizeof(number), "0x%X", tag.tag);
        Row({number, tag.name, NameOf(tag.type), tag.devices, Code(tag.operation.name), tag.value});
    }
}

void Operations() {
    std::puts(
        "\n## Operations\n\nWhere each of them stands, and which step of the start-up sequence or updater of "
        "the "
        "device walk runs it.");
    Head({"operation", "runs for", "source"});
    for (const PublishingOperation& operation : PublishingOperations()) {
        Row({Code(operation.name), Code(operation.step), operation.sourceFile});
    }
}

}  // namespace

int main() {
    std::puts("# What is published\n\n<!-- Made from the lists in tables/ by scripts/renew-published. -->\n");
    Properties();
    Files();
    Tags();
    Operations();
    return std::ferror(stdout) == 0 && std::fflush(stdout) == 0 ? 0 : 1;
}
