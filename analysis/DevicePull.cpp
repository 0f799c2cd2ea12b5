#include "analysis/DevicePull.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "analysis/Modules.h"
#include "analysis/PhoneCheck.h"
#include "formats/EepromDump.h"
#include "formats/EepromImage.h"
#include "tables/CameraDevices.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"

namespace analysis {

namespace {

using virtualphone::PhoneDescription;

constexpr std::string_view kVendorFolder = "/vendor/etc/camera/";

/// A camera folder: how it stands in a pulled tree, and where the phone has it.
struct CameraFolder {
    std::string_view pulled;
    std::string_view phone;
};

/// "persist/camera" alone is what a pull of the mounted partition leaves.
constexpr std::array<CameraFolder, 3> kCameraFolders = {{
    {"/persist/camera/", tables::kPersistFolder},
    {"/vendor/etc/camera/", kVendorFolder},
    {"/data/vendor/camera/", "/data/vendor/camera/"},
}};

std::string_view BaseName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

std::string Count(std::size_t count, std::string_view thing) {
    return std::to_string(count) + " " + std::string(thing) + (count == 1 ? "" : "s");
}

/// Takes "[name]: [value]" from the front of a text; the value ends where the next property or the text does.
std::optional<std::pair<std::string, std::string>> TakeProperty(std::string_view& text) {
    constexpr std::string_view kJoint = "]: [";
    const std::size_t joint = text.find(kJoint);
    if (!text.starts_with('[') || joint == std::string_view::npos || joint > text.find('\n')) {
        return std::nullopt;
    }
    const std::size_t start = joint + kJoint.size();
    std::size_t end = text.find("]\n", start);
    while (end != std::string_view::npos && end + 2 < text.size() && text[end + 2] != '[') {
        end = text.find("]\n", end + 1);
    }
    const bool last = end == std::string_view::npos;
    if (last && !text.ends_with(']')) {
        return std::nullopt;
    }
    end = last ? text.size() - 1 : end;
    std::pair property(std::string(text.substr(1, joint - 1)), std::string(text.substr(start, end - start)));
    text.remove_prefix(std::min(text.size(), end + 2));
    return property;
}

class Builder {
  public:
    Builder(const PhoneDescription& like, const std::string& likeName) : mLikeName(likeName) {
        mPull.phone = like;
        std::erase_if(mPull.phone.files, [](const auto& file) {
            return file.first.starts_with(kCameraFolders[0].phone) ||
                   file.first.starts_with(kCameraFolders[2].phone);
        });
    }

    void take(const PulledFile& file) {
        const PulledKind kind = PulledKindOf(file.path);
        if (kind.dumpOf != nullptr) {
            takeDump(file, *kind.dumpOf);
        } else if (!kind.phonePath.empty()) {
            takePhoneFile(file, kind.phonePath);
        } else if (auto properties =
                       ReadGetprop({reinterpret_cast<const char*>(file.bytes.data()), file.bytes.size()})) {
            takeProperties(file, std::move(*properties));
        }
    }

    DevicePull finish() && {
        if (mPull.trouble.empty() && mDumps.empty() && mPhonePaths.empty() && mGetprop.empty()) {
            mPull.trouble = "there is no EEPROM dump, no camera folder and no getprop output in it";
        }
        if (!mPull.trouble.empty()) {
            return std::move(mPull);
        }
        finishFiles();
        finishProperties();
        finishModules();
        return std::move(mPull);
    }

  private:
    bool isFirst(bool inserted, const PulledFile& file) {
        if (!inserted) {
            mPull.leftOut.push_back(file.path + ": an earlier file is the same one of the phone");
        }
        return inserted;
    }

    void takeDump(const PulledFile& file, const tables::ModuleRole& role) {
        if (!isFirst(mDumps.try_emplace(role.roleId).second, file)) {
            return;
        }
        const std::string_view text(reinterpret_cast<const char*>(file.bytes.data()), file.bytes.size());
        std::vector<std::uint8_t>& image = mDumps[role.roleId];
        if (formats::IsEepromDump(text)) {
            formats::EepromDump dump = formats::ReadEepromDump(text);
            if (const auto* const error = std::get_if<formats::EepromDumpError>(&dump)) {
                refuse(file.path + ": expected " + error->expected + " in line " +
                       std::to_string(error->line) + ", got " + error->found);
                return;
            }
            image = std::get<std::vector<std::uint8_t>>(std::move(dump));
        } else if (file.bytes.size() == tables::kEepromImageSize) {
            image = file.bytes;
        } else {
            refuse(file.path + ": expected the text of a dump, or " +
                   Count(tables::kEepromImageSize, "byte") + ", got " + Count(file.bytes.size(), "byte"));
            return;
        }
        const EepromCheckSumDesc* const layout = formats::FindEepromLayout(image);
        mPull.found.push_back(
            file.path + ": " + RoleName(role.roleId) + ", " +
            (layout == nullptr ? "no layout of this phone" : std::string("layout ") + layout->eepromName));
    }

    void takePhoneFile(const PulledFile& file, const std::string& phonePath) {
        if (!isFirst(mPhonePaths.insert(phonePath).second, file)) {
            return;
        }
        if (tables::FindPublishedFile(phonePath) != nullptr) {
            mPull.leftOut.push_back(phonePath + ": the boot writes it anew");
            return;
        }
        if (phonePath.starts_with(kVendorFolder) && !std::exchange(mVendorFound, true)) {
            std::erase_if(mPull.phone.files,
                          [](const auto& laid) { return laid.first.starts_with(kVendorFolder); });
        }
        mPull.phone.files[phonePath] = file.bytes;
        mPull.found.push_back(phonePath + ": " + Count(file.bytes.size(), "byte"));
    }

    void takeProperties(const PulledFile& file, std::map<std::string, std::string> properties) {
        if (!mGetprop.empty()) {
            mPull.leftOut.push_back(file.path + ": getprop output beside " + mGetprop);
            return;
        }
        mGetprop = file.path;
        mProperties = std::move(properties);
    }

    void refuse(std::string trouble) {
        mPull.trouble = mPull.trouble.empty() ? std::move(trouble) : mPull.trouble;
    }

    void finishFiles() {
        if (!mVendorFound) {
            mPull.assumed.push_back(std::string(kVendorFolder) + ": as in " + mLikeName);
        }
        for (const CameraFolder& folder : {kCameraFolders[0], kCameraFolders[2]}) {
            const auto first = mPhonePaths.lower_bound(folder.phone);
            if (first == mPhonePaths.end() || !first->starts_with(folder.phone)) {
                mPull.assumed.push_back(std::string(folder.phone) + ": empty");
            }
        }
    }

    void finishProperties() {
        if (mGetprop.empty()) {
            mPull.assumed.push_back("properties before the boot: as in " + mLikeName);
            return;
        }
        std::map<std::string, std::string>& preset = mPull.phone.properties;
        preset.clear();
        std::size_t published = 0;
        for (const auto& [name, value] : mProperties) {
            if (tables::FindPublishedProperty(name) != nullptr) {
                ++published;
            } else if (name == tables::kEepromDumpProperty) {
                mPull.leftOut.push_back(name + ": it asked for the dumps");
            } else if (value.size() > virtualphone::kLongestPropertyValue) {
                mPull.leftOut.push_back(name + ": a value of " + std::to_string(value.size()) +
                                        " bytes, which only the phone itself can set");
            } else {
                preset[name] = value;
            }
        }
        if (published != 0) {
            mPull.leftOut.push_back(std::to_string(published) + " properties that the boot sets anew");
        }
        mPull.found.push_back(mGetprop + ": " + std::to_string(mProperties.size()) + " properties, " +
                              std::to_string(preset.size()) + " of them from before the boot");
    }

    /// What `getprop` says of the module of a role: "imx707", "none", or nothing.
    std::string chipInGetprop(const char* roleName) const {
        for (const char* const property : {tables::kModuleInfoProperty, tables::kModuleInfoExtProperty}) {
            const auto found = mProperties.find(property);
            const std::string text = ";" + (found == mProperties.end() ? "" : found->second);
            const std::string key = ";" + std::string(roleName) + "=";
            if (const std::size_t at = text.find(key); at != std::string::npos) {
                const std::size_t start = at + key.size();
                return text.substr(start, text.find(';', start) - start);
            }
        }
        return {};
    }

    void finishModules() {
        for (std::size_t i = 0; i < mPull.phone.sensors.size(); ++i) {
            std::optional<virtualphone::EepromDescription>& memory = mPull.phone.sensors[i].eeprom;
            const int role = RoleOfSensor(mPull.phone, i);
            const std::string name = role < 0 ? "the sensor at index " + std::to_string(i) : RoleName(role);
            const auto dump = mDumps.find(role);
            if (dump == mDumps.end()) {
                memory.reset();
                mPull.assumed.push_back(name + ": its memory cannot be read, for there is no dump of it");
            } else {
                memory = {.image = std::move(dump->second),
                          .readReturns = memory ? memory->readReturns : std::nullopt};
                mDumps.erase(dump);
            }
            if (const tables::ModuleRole* const row = tables::FindModuleRole(role);
                row != nullptr && chipInGetprop(row->name) == "none") {
                mPull.assumed.push_back(name + ": fitted, as in " + mLikeName + ", while " + mGetprop +
                                        " says that it is not");
            }
        }
        for (const auto& [role, unused] : mDumps) {
            mPull.leftOut.push_back("the dump of " + RoleName(role) + ": " + mLikeName +
                                    " has no such sensor");
        }
        const PhoneDescription& phone = mPull.phone;
        mPull.assumed.push_back(Count(phone.sensors.size(), "sensor") + " with their ids, sizes and focus, " +
                                Count(phone.logicalDevices.size(), "logical device") +
                                " and the metadata of " + Count(phone.staticMetadata.size(), "provider") +
                                ": as in " + mLikeName);
        if (phone.faults != virtualphone::PhoneFaults()) {
            mPull.assumed.push_back("faults: as in " + mLikeName);
        }
    }

    const std::string& mLikeName;
    DevicePull mPull;
    std::map<int, std::vector<std::uint8_t>> mDumps;  ///< images by role
    std::set<std::string, std::less<>> mPhonePaths;
    bool mVendorFound = false;
    std::string mGetprop;  ///< path of the file
    std::map<std::string, std::string> mProperties;
};

}  // namespace

PulledKind PulledKindOf(std::string_view path) {
    const std::string_view dumpName = BaseName(tables::kEepromDumpPath);
    std::string_view name = BaseName(path);
    if (name.starts_with(dumpName)) {
        name.remove_prefix(dumpName.size());
        name = name.substr(0, name.find('.'));  // ".txt", where a person gave it one
        for (const tables::ModuleRole& role : tables::kModuleRoles) {
            if (name == role.name) {
                return {.dumpOf = &role, .phonePath = {}};
            }
        }
    }
    const std::string absolute = "/" + std::string(path);
    for (const CameraFolder& folder : kCameraFolders) {
        if (const std::size_t at = absolute.find(folder.pulled); at != std::string::npos) {
            return {.phonePath = std::string(folder.phone) + absolute.substr(at + folder.pulled.size())};
        }
    }
    return {};
}

std::optional<std::map<std::string, std::string>> ReadGetprop(std::string_view text) {
    std::string lines(text);
    std::erase(lines, '\r');
    std::string_view rest(lines);
    rest.remove_prefix(std::min(rest.find_first_not_of('\n'), rest.size()));
    while (rest.ends_with('\n')) {
        rest.remove_suffix(1);
    }
    std::map<std::string, std::string> properties;
    while (auto property = TakeProperty(rest)) {
        properties.insert(std::move(*property));
    }
    return properties.empty() || !rest.empty() ? std::nullopt : std::optional(std::move(properties));
}

DevicePull PhoneFromDevice(std::span<const PulledFile> files, const PhoneDescription& like,
                           const std::string& likeName) {
    Builder builder(like, likeName);
    for (const PulledFile& file : files) {
        builder.take(file);
    }
    return std::move(builder).finish();
}

}  // namespace analysis
