#include "zvcam/files/EepromFile.h"

#include <stdexcept>
#include <string_view>

#include "virtualphone/InputFile.h"
#include "zvcam/files/Output.h"

namespace zvcam {

formats::EepromFile ReadEepromFile(const std::string& file) {
    constexpr std::string_view kExpected = "an EEPROM image or its dump";
    formats::EepromFile eeprom = formats::ReadEepromFile(ReadFile(file, kExpected));
    if (eeprom.size == 0) {
        const bool empty = eeprom.expected.empty();
        throw std::runtime_error(virtualphone::InputName(file) + ": expected " +
                                 (empty ? std::string(kExpected) : eeprom.expected) + ", got " +
                                 (empty ? "an empty file" : eeprom.found));
    }
    return eeprom;
}

}  // namespace zvcam
