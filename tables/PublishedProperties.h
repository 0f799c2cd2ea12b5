#pragma once

#include <span>
#include <string_view>

#include "tables/PublishingOperations.h"

/// Every property that the plug-in publishes, and those that steer it.
namespace tables {

#define PROPERTY(constant, name, publisher, value) inline constexpr const char* constant = name;
#include "tables/PublishedProperties.inc"
#undef PROPERTY

// Read, never written.
/// A number other than 0 asks for the EEPROM dumps.
inline constexpr const char* kEepromDumpProperty = "vendor.debug.camera.eeprom_dump";
/// The value kThemeNoTesmor switches photo styles and the bokeh MD mode off.
inline constexpr const char* kThemeProperty = "ro.boot.product.theme_customize";
inline constexpr const char* kThemeNoTesmor = "NoTesmor";

/// What is known of a published property.
struct PublishedProperty {
    const char* name;
    int roleId;  ///< of the module that it tells of; -1: the whole phone
    PublishingOperation operation;
    const char* value;  ///< what it says, in Markdown
};

/// All published properties; those of one operation stand together.
std::span<const PublishedProperty> PublishedProperties();

/// The row of a property, or null for one that the plug-in does not publish.
const PublishedProperty* FindPublishedProperty(std::string_view name);

}  // namespace tables
