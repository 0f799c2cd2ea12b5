#include <optional>

#include "formats/PrintableText.h"
#include "virtualphone/InputFile.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/phonefile/internal/Sections.h"

namespace virtualphone {

namespace {

void ReadProperties(const JsonValue& value, PhoneDescription& phone) {
    for (const auto& [name, property] : value.members()) {
        if (name.empty() || name.find('\0') != std::string_view::npos) {
            property.fail("a property name", name.empty() ? "an empty key" : "a key with a zero byte");
        }
        const std::string& text = property.plainText();
        if (text.size() > kLongestPropertyValue) {
            property.fail(
                "a property value of at most " + std::to_string(kLongestPropertyValue) + " characters",
                std::to_string(text.size()));
        }
        phone.properties[std::string(name)] = text;
    }
}

}  // namespace

PhoneFileError::PhoneFileError(const std::string& message)
    : std::runtime_error(formats::Shortened(formats::Printable(message), kLongest)) {}

PhoneDescription ParsePhone(std::string_view json, const std::filesystem::path& folder,
                            const std::string& fileName) {
    const JsonDocument document = ParseJson(json, fileName);
    PhoneDescription phone;
    std::optional<JsonValue> aliases;
    JsonValue(document).readKeys({
        {"$schema", [](const JsonValue& v) { v.text(); }},
        {"name", [&](const JsonValue& v) { phone.name = v.text(); }},
        {"properties", [&](const JsonValue& v) { ReadProperties(v, phone); }},
        {"files", [&](const JsonValue& v) { ReadFiles(v, folder, phone); }},
        {"sensors", [&](const JsonValue& v) { ReadSensors(v, folder, phone); }},
        {"sensorAliases", [&](const JsonValue& v) { aliases = v; }},
        {"logicalDevices", [&](const JsonValue& v) { ReadLogicalDevices(v, phone); }},
        {"sensorDeviceIndexes",
         [&](const JsonValue& v) {
             for (const auto& [sensorId, deviceIndex] : v.numberedMembers<tables::MemberSensorId>()) {
                 phone.sensorDeviceIndexes[sensorId] = deviceIndex.integer<tables::DeviceIndex>();
             }
         }},
        {"staticMetadata", [&](const JsonValue& v) { ReadStaticMetadata(v, phone); }},
        {"faults", [&](const JsonValue& v) { ReadFaults(v, phone); }},
    });
    if (aliases) {
        ReadSensorAliases(*aliases, phone);
    }
    return phone;
}

PhoneDescription ReadPhoneFile(const std::filesystem::path& path) {
    const FileContent content = ReadInput(path);
    if (!content.error.empty()) {
        FailAt(InputName(path), "", "a phone file", content.instead());
    }
    return ParsePhone({reinterpret_cast<const char*>(content.bytes.data()), content.bytes.size()},
                      path.parent_path(), InputName(path));
}

}  // namespace virtualphone
