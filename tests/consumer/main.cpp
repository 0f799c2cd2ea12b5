#include <iostream>

#include "record/BootRecord.h"
#include "supervisor/Boot.h"
#include "virtualphone/PhoneFile.h"

/// consumer PHONE LIBRARY: boots a phone and prints the roles that its devices were given.
int main(int argc, char** argv) {
    if (argc != 3) {
        return 2;
    }
    const record::BootRecord boot =
        supervisor::Boot(virtualphone::ReadPhoneFile(argv[1]), {.library = argv[2]});
    for (const record::ProviderMerge* const device : record::EventsOf<record::ProviderMerge>(boot)) {
        std::cout << "provider " << device->provider << ": " << device->metadata.size() << " tags\n";
    }
    return record::EventsOf<record::ProviderMerge>(boot).empty() ? 1 : 0;
}
