#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

#include "virtualphone/Api.h"
#include "virtualphone/PhoneDescription.h"

namespace virtualphone {

/// What is wrong with a phone file, in one line: "FILE: /json/pointer: expected ..., got ...".
/// Also raised when a phone's files cannot be laid.
class VIRTUALPHONE_API PhoneFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads a phone file and the side files that it names.
/// @throws PhoneFileError for a file that cannot be read or is no phone.
VIRTUALPHONE_API PhoneDescription ReadPhoneFile(const std::filesystem::path& path);

/// Reads a phone from its JSON text.
/// @param folder where the side files lie that the text names by relative paths.
/// @param fileName stands in front of error messages.
/// @throws PhoneFileError for a text that is no phone.
VIRTUALPHONE_API PhoneDescription ParsePhone(std::string_view json, const std::filesystem::path& folder,
                                             const std::string& fileName);

}  // namespace virtualphone
