// Any text as the fuse id property of the wide, and in the lines behind it any bytes as the stabiliser file
// of the persist partition, as they are and with the CRC that they should have: the plug-in's stabiliser step
// ends, and publishes a state.

#include "formats/Bytes.h"
#include "fuzz/support/FreshPlugin.h"
#include "fuzz/support/Fuzzing.h"
#include "platform/Properties.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"

namespace {

void Publish(const std::string& fuseId, const std::vector<std::uint8_t>& file) {
    virtualphone::PhoneDescription phone;
    phone.properties["vendor.camera.sensor.w.fuseID"] = fuseId;
    phone.files[tables::kOisFilePath] = file;
    const FuzzPhone running(std::move(phone));
    FreshPlugin().OverriderOisCamCalData();
    const std::optional<std::string> state = (*running).property(tables::kOisCalStateProperty);
    Require(state == "0" || state == "2" || state == "3");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto [line, rest] = SplitLine({data, size});
    // The virtual phone refuses a longer one, and a C string ends at a zero byte.
    const std::string fuseId(line.substr(0, std::min<std::size_t>(line.find('\0'), PROPERTY_VALUE_MAX - 1)));
    std::vector<std::uint8_t> file(rest.begin(), rest.end());
    Publish(fuseId, file);
    formats::AppendCrc(file);
    Publish(fuseId, file);
    return 0;
}
