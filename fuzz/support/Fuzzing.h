#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "record/Recorder.h"
#include "virtualphone/DeviceFiles.h"
#include "virtualphone/TemporaryFolder.h"
#include "virtualphone/VirtualPhone.h"

/// What the fuzz targets share. An input is what the target's first comment says; the seeds are made the same
/// way.

using FuzzBytes = std::span<const std::uint8_t>;

/// What must hold for every input. Where it does not, the run ends and libFuzzer keeps the input.
inline void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

inline std::string_view TextOf(FuzzBytes bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The first line of an input and what follows it: two inputs in one.
inline std::pair<std::string_view, FuzzBytes> SplitLine(FuzzBytes bytes) {
    const std::string_view line = TextOf(bytes).substr(0, TextOf(bytes).find('\n'));
    return {line, bytes.subspan(std::min(line.size() + 1, bytes.size()))};
}

/// A phone that is switched on, in the one folder that all runs of a target have.
class FuzzPhone {
  public:
    explicit FuzzPhone(virtualphone::PhoneDescription phone)
        : mFiles(Root(), phone.files, virtualphone::DeviceFiles::Root::Emptied),
          mRunning(std::move(phone), mFiles, mRecorder) {}

    const virtualphone::VirtualPhone& operator*() const { return mRunning; }
    std::vector<record::Event> events() const { return mRecorder.events(); }

  private:
    static const std::filesystem::path& Root() {
        static const virtualphone::TemporaryFolder kFolder;
        return kFolder.path();
    }

    virtualphone::DeviceFiles mFiles;
    record::Recorder mRecorder;
    virtualphone::VirtualPhone mRunning;
};
