#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tables/CameraModules.h"
#include "tables/EepromLayouts.h"
#include "virtualphone/PhoneDescription.h"

namespace zvcam {

/// What a trouble can strike.
struct TroubleTarget {
    std::size_t sensor = 0;                      ///< of a module
    std::string where;                           ///< "back main", or a file's path
    const EepromCheckSumDesc* layout = nullptr;  ///< that a module has, or gets
};

/// The modules that have a memory, in the order of their sensors, with its layout.
std::vector<TroubleTarget> Memories(const virtualphone::PhoneDescription& phone);

/// Those whose fuse id can be read.
std::vector<TroubleTarget> MemoriesWithFuseId(const virtualphone::PhoneDescription& phone);

/// Where the module at a sensor index keeps its fuse id; null where nobody knows.
const FuseIdDescriptor* FuseIdPlaceOf(const virtualphone::PhoneDescription& phone, std::size_t sensor);

/// Whether a file of a phone is a persist file of a camera pair.
bool IsPairFile(const std::string& path, const std::vector<std::uint8_t>& bytes);

/// Whether it is one of the stabiliser.
bool IsStabiliserFile(const std::string& path, const std::vector<std::uint8_t>& bytes);

}  // namespace zvcam
