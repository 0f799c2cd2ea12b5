#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/PhoneBuilder.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/TemporaryFolder.h"
#include "virtualphone/VirtualPhone.h"

/// What the `PhoneFileError` of an action says; "no error" without one.
template <typename Action>
std::string PhoneFileErrorOf(const Action& action) {
    try {
        action();
    } catch (const virtualphone::PhoneFileError& error) {
        return error.what();
    }
    return "no error";
}

/// A phone that is alive in this process under a temporary root.
class TestPhone {
  public:
    explicit TestPhone(const PhoneBuilder& phone = {});

    virtualphone::VirtualPhone& phone() { return mPhone; }
    const virtualphone::Record& record() const { return mPhone.record(); }

    /// All log lines. Those of the plug-in as "P [Function] message", P being D, I or E and the thread id
    /// left out; those of another tag as "P tag: message".
    std::vector<std::string> log() const;
    /// The lines that the plug-in logged in the name of `function`, as "P message".
    std::vector<std::string> logOf(const std::string& function) const;
    /// The lines of priority error, without the "E ".
    std::vector<std::string> errors() const;

    /// The present value of a property; "<unset>" when it has none.
    std::string property(const std::string& name) const;

    /// The bytes of a file under the root. A missing file fails the test.
    std::vector<std::uint8_t> file(const std::string& phonePath) const;
    /// Makes or replaces a file, and the folders above it.
    void write(const std::string& phonePath, const std::vector<std::uint8_t>& bytes) const;

  private:
    virtualphone::TemporaryFolder mRoot;
    virtualphone::VirtualPhone mPhone;
};
