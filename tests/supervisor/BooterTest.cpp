#include <cstdlib>
#include <regex>
#include <sstream>

#include <gmock/gmock.h>

#include "record/Report.h"
#include "supervisor/Booter.h"
#include "supervisor/Plugin.h"
#include "supervisor/internal/DescriptionBytes.h"
#include "tests/supervisor/MisbehavingPhone.h"
#include "virtualphone/PhoneFile.h"

// MISBEHAVING, NO_PLUGIN, PLUGIN and PHONES are paths; the build defines them.

namespace {

using supervisor::BootOptions;

/// A record as its report, without what no two boots have alike.
std::string Masked(const record::BootRecord& boot) {
    std::ostringstream report;
    record::WriteReport(report, boot);
    static const std::regex kThreadOrAddress("\"\\([0-9]+\\)|0x[0-9a-f]{8,}");
    return std::regex_replace(report.str(), kThreadOrAddress, "?");
}

/// Whatever a boot leaves behind, the next one finds the phone as it is described.
TEST(Booter, EveryBootIsAsIfItWereTheOnlyOne) {
    for (const char* library : {PLUGIN, MISBEHAVING}) {
        // The phones hang the one of these libraries that does what they say.
        const BootOptions options{.library = library,
                                  .timeout = std::chrono::seconds(library == std::string(PLUGIN) ? 20 : 2)};
        supervisor::Booter booter(options);
        std::vector<virtualphone::PhoneDescription> phones;
        for (const char* deed :
             {"crash", "", "throw", "fill a file", "exit", "litter", "hang", "fork", "scribble"}) {
            phones.push_back(PhoneThatMakesIt(deed));
        }
        for (const char* name : {"/halcyrion.json", "/fieldtrouble.json", "/halcyrion.json"}) {
            phones.push_back(virtualphone::ReadPhoneFile(std::string(PHONES) + name));
            phones.push_back(PhoneThatMakesIt(""));
        }
        for (const virtualphone::PhoneDescription& phone : phones) {
            EXPECT_EQ(Masked(booter.boot(phone)), Masked(supervisor::Boot(phone, options)))
                << phone.properties.begin()->second;
        }
    }
}

/// What a library does when it is loaded each boot shows.
TEST(Booter, ALibraryThatDoesSomethingWhenItIsLoadedIsLoadedByEachPhone) {
    for (const std::string deed : {"crash", "exit", "hang", "log", "thread"}) {
        const BootOptions options{.library = MISBEHAVING,
                                  .timeout = std::chrono::milliseconds(deed == "hang" ? 300 : 20000)};
        setenv("TEST_DEED_WHEN_LOADED", deed.c_str(), 1);
        supervisor::Booter booter(options);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(Masked(booter.boot(PhoneThatMakesIt(""))),
                      Masked(supervisor::Boot(PhoneThatMakesIt(""), options)))
                << deed;
        }
    }
    unsetenv("TEST_DEED_WHEN_LOADED");
}

/// Without the process that has the plug-in loaded there are boots all the same, though another one that
/// loading it has left has what that one had open.
TEST(Booter, ABootMayStopOrKillTheProcessThatStartsTheOthers) {
    for (const std::string whenLoaded : {"", "leave a process"}) {
        for (const std::string deed : {"stop siblings", "kill siblings"}) {
            // An answer that does not come is waited for as long.
            const bool waits = !whenLoaded.empty() || deed == "stop siblings";
            setenv("TEST_DEED_WHEN_LOADED", whenLoaded.c_str(), 1);
            supervisor::Booter booter(
                {.library = MISBEHAVING, .timeout = std::chrono::seconds(waits ? 2 : 20)});
            unsetenv("TEST_DEED_WHEN_LOADED");
            for (const std::string& each : {deed, std::string(), std::string()}) {
                EXPECT_TRUE(booter.boot(PhoneThatMakesIt(each)).ended->returned()) << deed;
            }
        }
    }
}

TEST(Booter, ALibraryThatIsNoPluginIsRefused) {
    EXPECT_THROW(supervisor::Booter({.library = NO_PLUGIN}), supervisor::PluginError);
    EXPECT_THROW(supervisor::Booter({.library = "none.so"}), supervisor::PluginError);
}

/// A phone crosses to its process with everything but the files; what is cut is none.
TEST(DescriptionBytes, AreReadAsTheyWereWritten) {
    for (const char* name : {"/halcyrion.json", "/fieldtrouble.json"}) {
        virtualphone::PhoneDescription phone = virtualphone::ReadPhoneFile(std::string(PHONES) + name);
        std::vector<std::uint8_t> bytes;
        const virtualphone::FailingCalls failing = {{virtualphone::Call::Asked, {1, 3}},
                                                    {virtualphone::Call::FileRead, {0}}};
        supervisor::AppendPhone(bytes, phone, failing);
        phone.files.clear();
        EXPECT_TRUE(supervisor::ReadPhone(bytes) == std::pair(phone, failing));
        for (std::size_t size = 0; size < bytes.size(); size += 97) {
            EXPECT_FALSE(supervisor::ReadPhone(std::span(bytes).first(size))) << size;
        }
    }
}

}  // namespace
