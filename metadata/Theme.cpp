#include "metadata/Theme.h"

#include <string_view>

#include "platform/Properties.h"
#include "tables/PublishedProperties.h"

bool IsThemeNoTesmor() {
    char theme[PROPERTY_VALUE_MAX];
    return property_get(tables::kThemeProperty, theme, nullptr) >= 1 &&
           std::string_view(theme) == tables::kThemeNoTesmor;
}
