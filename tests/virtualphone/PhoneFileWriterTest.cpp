#include <cmath>
#include <limits>
#include <random>
#include <sstream>

#include "tests/support/PhoneBuilder.h"
#include "tests/support/TestPhone.h"

namespace {

using virtualphone::ParsePhone;
using virtualphone::PhoneDescription;
using virtualphone::PhoneFileText;

PhoneDescription Again(const PhoneDescription& phone) {
    return ParsePhone(PhoneFileText(phone), "/nowhere", "again.json");
}

TEST(PhoneFileWriter, WritesWhatPeopleWouldWrite) {
    PhoneDescription phone =
        PhoneOf({{.deviceId = 7,
                  .eeprom = Eeprom({{1, "03"}, {16, "01020000000005"}, {100, "07"}}, 255),
                  .readReturns = 100,
                  .sensorId = 0x707,
                  .captureSize = {4096, 3072},
                  .modes = {{1, {4096, 3072}}}},
                 {.eeprom = Eeprom(), .autofocus = {{true, {{{3000, 123}, {-1, 2}}}}}}})
            .devices({{{0, 3}, true, 9, "BACK"}, {}})
            .deviceIndex(0, 1)
            .property("a", "1")
            .file("/empty", {})
            .file("/fill", Bytes(4096, 90))
            .file("/text", {'a', '"', '\n'})
            .file("/hex", {0, 1, 2})
            .holds(0x40007, 0x8006000E, std::vector<float>{24, 0.1F})
            .faults({.sensorList = true, .metadataUpdate = {{16, -5}}})
            .description();
    phone.name = "small";
    EXPECT_EQ(PhoneFileText(phone), R"({
  "name": "small",
  "properties": { "a": "1" },
  "files": {
    "/empty": {},
    "/fill": { "fill": 90, "size": 4096 },
    "/hex": { "hex": "000102" },
    "/text": { "text": "a\"\n" }
  },
  "sensors": [
    {
      "deviceId": 7,
      "sensorId": "0x707",
      "captureSize": [4096, 3072],
      "modes": [[0, 0], [4096, 3072]],
      "eeprom": {
        "fill": 255,
        "bytes": { "1": "03", "16": "01020000000005", "100": "07" },
        "readReturns": 100
      }
    },
    { "eeprom": {}, "af": { "capable": true, "points": [[3000, 123], [-1, 2]] } }
  ],
  "sensorAliases": { "7": { "deviceBits": 128, "deviceId": 7 } },
  "logicalDevices": [{ "name": "BACK", "multiSensor": true, "sensorIds": [0, 3], "sensorBits": 9 }, {}],
  "sensorDeviceIndexes": { "0": 1 },
  "staticMetadata": { "0x40007": { "0x8006000E": { "type": "float", "values": [24.0, 0.1] } } },
  "faults": { "sensorList": true, "metadataUpdate": { "0x10": -5 } }
}
)");
    EXPECT_EQ(Again(phone), phone);
}

TEST(PhoneFileWriter, SamplePhonesComeBackAndStaySmall) {
    for (const char* const name : {"/halcyrion.json", "/fieldtrouble.json"}) {
        const PhoneDescription phone = virtualphone::ReadPhoneFile(std::string(PHONES) + name);
        EXPECT_EQ(Again(phone), phone) << name;
        EXPECT_LT(PhoneFileText(phone).size(), 8192U) << name;
    }
}

/// A phone that has every part, each with values from all over its range.
PhoneDescription RandomPhone(std::mt19937& random) {
    const auto number = [&random] {
        const auto bits = static_cast<std::int32_t>(random());
        return random() % 2 == 0 ? bits : bits >> 28;
    };
    const auto unsignedNumber = [&number] { return static_cast<std::uint32_t>(number()); };
    const auto upTo = [&random](std::size_t most) { return static_cast<std::size_t>(random()) % (most + 1); };
    const auto bytes = [&](std::size_t size) {
        Bytes made(size, static_cast<std::uint8_t>(random()));
        for (std::size_t runs = upTo(6); runs > 0 && size > 0; --runs) {
            std::fill_n(made.begin() + static_cast<std::ptrdiff_t>(upTo(size - 1)), 1, number());
        }
        if (random() % 4 == 0) {
            std::generate(made.begin(), made.end(), std::ref(random));
        }
        return made;
    };
    const auto text = [&] {
        constexpr std::string_view kPieces[] = {"a", "\"", "\\", "\n", "\x01", "\xC3\xA4", "\xF0\x9F\x93\xB7",
                                                "/", "~"};
        std::string made;
        for (std::size_t count = upTo(8); count > 0; --count) {
            made += kPieces[upTo(std::size(kPieces) - 1)];
        }
        return made;
    };
    const auto size = [&] { return std::array{number() & 0xFFFF, number() & 0xFFFF}; };

    PhoneBuilder phone;
    for (std::size_t count = upTo(4); count > 0; --count) {
        FittedSensor sensor{.deviceId = number(),
                            .deviceBits = unsignedNumber(),
                            .sensorId = unsignedNumber(),
                            .pixelArray = size(),
                            .captureSize = size(),
                            .modes = {{upTo(19), size()}},
                            .inSensorZoom = std::vector<std::int32_t>(upTo(3), number())};
        if (random() % 2 == 0) {
            sensor.eeprom = bytes(16384);
            sensor.readReturns = random() % 2 == 0 ? std::optional(unsignedNumber()) : std::nullopt;
            sensor.autofocus = {{random() % 2 == 0, {{{number(), number()}, {number(), number()}}}}};
        }
        phone.sensors({sensor});
    }
    phone.alias(-1 - static_cast<int>(upTo(9)), unsignedNumber(), number())
        .deviceIndex(number(), number())
        .devices({{std::vector<int>(upTo(3), number()), random() % 2 == 0, unsignedNumber(), text()}})
        .property("p" + text(), text())
        .file("/f/" + std::to_string(upTo(9)), bytes(upTo(300)))
        .file("/g", bytes(upTo(3)))
        .holds<std::int32_t>(unsignedNumber(), unsignedNumber(), {number(), number()})
        .holds<std::int64_t>(1, 2, {std::numeric_limits<std::int64_t>::min(), number()})
        .holds<float>(1, 3, {std::bit_cast<float>(number()), -0.0F, std::nanf(""), -HUGE_VALF})
        .holds<std::uint8_t>(1, 1, bytes(upTo(3)))
        .holds<record::Blob>(0xFFFFFFFF, unsignedNumber(), {bytes(upTo(40)), {}})
        .faults({.moduleFactory = random() % 2 == 0,
                 .calibrationDriver = random() % 2 == 0,
                 .sensorDrivers = {number()},
                 .sensorObjects = {number(), 1},
                 .staticInfo = {number()},
                 .metadataUpdate = {{unsignedNumber(), number()}},
                 .propertySet = {text()}});
    return phone.description();
}

TEST(PhoneFileWriter, AnyPhoneComesBack) {
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i) {
        const PhoneDescription phone = RandomPhone(random);
        ASSERT_EQ(Again(phone), phone) << i << ": " << PhoneFileText(phone).substr(0, 2000);
    }
}

}  // namespace
