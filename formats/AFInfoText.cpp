#include "formats/AFInfoText.h"

#include <cstdio>

namespace formats {

std::string MakeAFInfoText(const AFPoint& first, const AFPoint& second) {
    char text[64];
    std::snprintf(text, sizeof(text), "%d:%d,%d:%d,", first.distance / 10, first.lensPosition,
                  second.distance / 10, second.lensPosition);
    return text;
}

}  // namespace formats
