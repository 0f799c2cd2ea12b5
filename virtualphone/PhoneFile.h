#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "virtualphone/Api.h"
#include "virtualphone/PhoneDescription.h"

namespace virtualphone {

/// What is wrong with a phone file: "FILE: /json/pointer: expected ..., got ...". One line of printable
/// UTF-8; what is longer than `kLongest` bytes has lost its middle.
/// Also raised when a phone's files cannot be laid.
class VIRTUALPHONE_API PhoneFileError : public std::runtime_error {
  public:
    /// Leaves room in a line of 300 for the name of the program that prints it.
    static constexpr std::size_t kLongest = 280;

    explicit PhoneFileError(const std::string& message);
};

/// Reads a phone file, and the side files that it names by paths that start at its folder.
/// @param path "-": standard input, where relative paths start at the working folder.
/// @throws PhoneFileError for a file that cannot be read or is no phone.
VIRTUALPHONE_API PhoneDescription ReadPhoneFile(const std::filesystem::path& path);

/// Reads a phone from its JSON text.
/// @param folder where the side files lie that the text names by relative paths.
/// @param fileName stands in front of error messages.
/// @throws PhoneFileError for a text that is no phone.
VIRTUALPHONE_API PhoneDescription ParsePhone(std::string_view json, const std::filesystem::path& folder,
                                             const std::string& fileName);

/// Contents that a written phone file names instead of holding them; paths start at its folder.
struct SideFiles {
    std::map<std::string, std::string> files;             ///< by phone path
    std::map<tables::SensorIndex, std::string> memories;  ///< by sensor index
};

/// Writes a phone as a phone file with all bytes inside, from which `ParsePhone` makes the same description.
/// What a phone file cannot say is not kept: bytes of texts that are not UTF-8 become U+FFFD.
VIRTUALPHONE_API void WritePhoneFile(std::ostream& out, const PhoneDescription& phone);

/// The same as a text.
/// @param sideFiles what the text names; the caller writes their contents.
VIRTUALPHONE_API std::string PhoneFileText(const PhoneDescription& phone, const SideFiles& sideFiles = {});

/// A phone file that teaches the format: this phone as it leaves the factory, with comments on every key.
VIRTUALPHONE_API std::string_view StartingPhoneFile();

/// The JSON Schema (draft 2020-12) of the phone file. What a schema cannot say is left to the reader.
VIRTUALPHONE_API std::string_view PhoneFileSchema();

}  // namespace virtualphone
