#include "analysis/Properties.h"

namespace analysis {

std::map<std::string, std::string> PropertiesAfter(const Boot& boot) {
    std::map<std::string, std::string> properties;
    if (boot.phone) {
        properties = boot.phone->properties;
    }
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot.record)) {
        if (set->stored) {
            properties[set->name] = set->value;
        }
    }
    return properties;
}

}  // namespace analysis
