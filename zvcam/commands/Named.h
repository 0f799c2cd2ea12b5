#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "analysis/Devices.h"
#include "analysis/Influence.h"
#include "analysis/Why.h"

namespace zvcam {

// What options name, in words of a person.

/// Position of the device update that a person names: "4" for logical device 4, "4/3" for its member with
/// sensor id 3.
/// @param boot that updated the devices: where it did not return, the error says so.
/// @throws std::runtime_error for a text that names none.
std::size_t DeviceNamed(const std::string& text, const std::vector<analysis::Device>& devices,
                        const record::BootRecord& boot);

/// The one thing that a text names. Of the two numbers of a bokeh tag, that of the device's role.
/// @param device null where there is none.
/// @throws std::runtime_error for a text that names none, or several.
analysis::Item ItemNamed(const std::string& text, const analysis::Device* device);

/// The tags that a text names, by name, end of a name, or number; none of them for an empty text, which asks
/// for all.
/// @throws std::runtime_error for a text that names none.
std::set<std::uint32_t> TagsNamed(const std::string& text);

/// All inputs of a phone, or the module that a text names: "back_main" or "back main".
/// @param module empty: all of them.
/// @throws std::runtime_error for a text that names none.
std::vector<analysis::Input> InputsNamed(std::vector<analysis::Input> inputs, const std::string& module);

}  // namespace zvcam
