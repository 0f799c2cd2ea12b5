#include "metadata/Theme.h"

#include <string_view>

#include "platform/Properties.h"

bool IsThemeNoTesmor() {
    char theme[PROPERTY_VALUE_MAX];
    return property_get("ro.boot.product.theme_customize", theme, nullptr) >= 1 &&
           std::string_view(theme) == "NoTesmor";
}
