#pragma once

#include <string>

#include "virtualphone/PhoneDescription.h"

/// A phone that tells the misbehaving plug-in what to do.
inline virtualphone::PhoneDescription PhoneThatMakesIt(const std::string& deed) {
    virtualphone::PhoneDescription phone;
    phone.properties["test.deed"] = deed;
    phone.files["/laid"] = {1};
    return phone;
}
