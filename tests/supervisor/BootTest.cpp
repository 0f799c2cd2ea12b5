#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "supervisor/Boot.h"
#include "supervisor/EndOnSignal.h"
#include "supervisor/Plugin.h"
#include "tests/supervisor/MisbehavingPhone.h"
#include "tests/support/CaughtCalls.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/TemporaryFolder.h"

// MISBEHAVING and NO_PLUGIN are file names; the build defines them.

namespace {

namespace fs = std::filesystem;
using record::Ended;
using supervisor::BootOptions;
using testing::ElementsAre;
using testing::IsEmpty;
using How = Ended::How;

const BootOptions kOptions{.library = MISBEHAVING, .timeout = std::chrono::seconds(20)};

/// Only what hangs is to reach its limit, however slow the machine.
BootOptions OptionsFor(const std::string& deed) {
    BootOptions options = kOptions;
    if (deed == "hang") {
        options.timeout = std::chrono::milliseconds(300);
    }
    return options;
}

record::BootRecord BootTo(const std::string& deed) {
    return supervisor::Boot(PhoneThatMakesIt(deed), OptionsFor(deed));
}

/// A temporary folder of this test's own: nothing may be left in it.
class Boot : public testing::Test {
  protected:
    Boot() { setenv("TMPDIR", mFolder.path().c_str(), 1); }
    ~Boot() override {
        EXPECT_TRUE(fs::is_empty(mFolder.path()));
        setenv("TMPDIR", mFormer.c_str(), 1);
    }

    const std::string mFormer = fs::temp_directory_path();
    virtualphone::TemporaryFolder mFolder;
};

TEST_F(Boot, KeepsTheRecordHoweverItEnds) {
    // What ends the boot must not be handled there as it is here.
    const supervisor::EndOnSignal endOnSignal;
    const std::string what = "an exception that is no std::exception";
    const std::map<std::string, Ended> endings = {
        {"", {}},
        {"print", {}},
        {"leak", {}},
        {"fork", {}},
        {"crash", {.how = How::Signal, .what = "", .signal = SIGSEGV, .step = "Deed"}},
        {"abort", {.how = How::Signal, .what = "", .signal = SIGABRT, .step = "Deed"}},
        {"real-time signal", {.how = How::Signal, .what = "", .signal = SIGRTMIN, .step = "Deed"}},
        {"exit", {.how = How::Exited, .what = "", .exitStatus = 0, .step = "Deed"}},
        {"hang", {.how = How::Timeout, .what = "", .seconds = 0.3, .step = "Deed"}},
        {"throw", {.how = How::Threw, .what = "off the end", .step = "Deed"}},
        {"throw int", {.how = How::Threw, .what = what, .step = "Deed"}},
    };
    for (const auto& [deed, ended] : endings) {
        const record::BootRecord boot = BootTo(deed);
        EXPECT_EQ(boot.ended, ended) << deed << ": " << record::EndText(*boot.ended);
        EXPECT_TRUE(boot.events == (std::vector<record::Event>{
                                       record::LogLine{4, "CameraPlatformInfoZelvan", "(1)[Deed] before"},
                                       record::PropertyAsked{"test.deed", deed}}))
            << deed;
        EXPECT_THAT(boot.troubles, IsEmpty()) << deed;
        EXPECT_THAT(boot.files, IsEmpty()) << deed;
        EXPECT_EQ(boot.plugin.value().path, MISBEHAVING);
        EXPECT_EQ(boot.plugin->buildId.size() % 2, 0U);
        EXPECT_EQ(virtualphone::ParsePhone(boot.description, "", "p").properties.at("test.deed"), deed);
    }
}

TEST_F(Boot, PrintsToStandardErrorAlone) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::cout << "pending";
    BootTo("print");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "pending");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "printed\n");
}

TEST_F(Boot, AFullRecordAndAFileThatCannotBeReadCostALine) {
    BootOptions options = kOptions;
    options.recordLimit = 100000;
    const record::BootRecord boot = supervisor::Boot(PhoneThatMakesIt("flood"), options);
    EXPECT_TRUE(boot.ended->returned());
    EXPECT_THAT(boot.troubles,
                ElementsAre(testing::MatchesRegex("the record is full: [0-9]+ later events are lost")));
    EXPECT_THAT(
        BootTo("fill a file").troubles,
        ElementsAre("/data/vendor/camera/large: changed, and cannot be read: more than 67108864 bytes"));
}

TEST_F(Boot, ARecordThatThePluginOverwritesCostsALine) {
    const record::BootRecord boot = BootTo("scribble");
    EXPECT_EQ(record::EndText(*boot.ended), "exited with status 0");
    EXPECT_THAT(boot.troubles, ElementsAre("the record is damaged: the plug-in has written into it"));
}

TEST_F(Boot, ALibraryThatIsNoPluginIsRefused) {
    EXPECT_THROW(supervisor::Boot(PhoneThatMakesIt(""), {.library = NO_PLUGIN}), supervisor::PluginError);
    EXPECT_THROW(supervisor::Boot(PhoneThatMakesIt(""), {.library = "none.so"}), supervisor::PluginError);
}

TEST_F(Boot, ManyAtOnceFromOneThread) {
    std::vector<supervisor::RunningBoot> boots;
    for (const char* deed : {"hang", "crash", "", "throw"}) {
        boots.emplace_back(PhoneThatMakesIt(deed), OptionsFor(deed));
    }
    pollfd last{.fd = boots[3].pollFd(), .events = POLLIN, .revents = 0};
    EXPECT_EQ(poll(&last, 1, 20000), 1);
    std::string ends;
    for (supervisor::RunningBoot& boot : boots) {
        ends += record::EndText(*boot.finish().ended) + "\n";
    }
    EXPECT_EQ(ends,
              "did not return within 0.3 seconds in Deed\nwas ended by SIGSEGV in Deed\nreturned\n"
              "threw: off the end\n");
    const supervisor::RunningBoot abandoned(PhoneThatMakesIt("hang"), kOptions);
}

TEST_F(Boot, AKeptRootIsOnePhonesAndMayBeEmptiedFirst) {
    const virtualphone::TemporaryFolder other;
    std::ofstream(other.path() / "outside") << "x";
    BootOptions options = kOptions;
    options.root = mFolder.path() / "kept";
    fs::create_directories(options.root / "folder");
    fs::create_directory_symlink(other.path(), options.root / "link");
    std::ofstream(options.root / "folder" / "foreign") << "x";
    std::ofstream(options.root / "sparse") << "x";
    fs::resize_file(options.root / "sparse", (std::uintmax_t{64} << 20) + 1);
    const record::BootRecord first = supervisor::Boot(PhoneThatMakesIt(""), options);
    EXPECT_EQ(first.foreignFiles, 2U);
    EXPECT_THAT(first.troubles, IsEmpty());
    {
        const supervisor::RunningBoot running(PhoneThatMakesIt("hang"), options);
        EXPECT_THROW(supervisor::Boot(PhoneThatMakesIt(""), options), virtualphone::PhoneFileError);
    }
    options.cleanRoot = true;
    EXPECT_EQ(supervisor::Boot(PhoneThatMakesIt(""), options).foreignFiles, 0U);
    EXPECT_FALSE(fs::exists(options.root / "folder"));
    EXPECT_TRUE(fs::exists(other.path() / "outside"));
    fs::remove_all(options.root);
}

TEST_F(Boot, AFileWrittenAgainCountsThoughItIsTheSame) {
    BootOptions options = kOptions;
    options.root = mFolder.path() / "kept";
    const auto paths = [](const std::vector<record::ChangedFile>& files) {
        std::vector<std::string> found;
        for (const record::ChangedFile& file : files) {
            found.push_back(file.path);
        }
        return found;
    };
    const std::string made = "/data/vendor/camera/made";
    virtualphone::PhoneDescription phone = PhoneThatMakesIt("make a file");
    EXPECT_THAT(paths(supervisor::Boot(phone, options).files), ElementsAre(made));
    // At once, while the clock of file times may still stand where it stood.
    const record::BootRecord again = supervisor::Boot(phone, options);
    EXPECT_THAT(again.files, IsEmpty());
    EXPECT_THAT(paths(again.rewritten), ElementsAre(made));
    EXPECT_THAT(supervisor::Boot(PhoneThatMakesIt(""), options).rewritten, IsEmpty());
    // One that the phone brings itself.
    phone.files[made] = again.rewritten.at(0).bytes;
    options.root.clear();
    const record::BootRecord laid = supervisor::Boot(phone, options);
    EXPECT_THAT(laid.files, IsEmpty());
    EXPECT_THAT(paths(laid.rewritten), ElementsAre(made));
    fs::remove_all(mFolder.path() / "kept");
}

/// The one call fails, and no other; that of a file whatever library makes it, and wherever the root lies.
TEST_F(Boot, CallsFailByKindAndNumber) {
    if (!CallsOfFilesCanBeCaught()) {
        GTEST_SKIP() << "this kernel does not hand calls to a process";
    }
    using virtualphone::Call;
    const virtualphone::TemporaryFolder place;
    fs::create_directory(place.path() / "place");
    fs::create_directory_symlink("place", place.path() / "link");
    for (const fs::path& root : {fs::path(), place.path() / "link" / "root"}) {
        const auto boot = [&root](const char* deed, const virtualphone::FailingCalls& failing) {
            BootOptions options = kOptions;
            options.root = root;
            options.cleanRoot = true;
            options.timeout = std::chrono::seconds(20);
            options.failing = failing;
            return supervisor::Boot(PhoneThatMakesIt(deed), options);
        };
        const record::BootRecord none = boot("make a file", {{Call::FileRead, {}}});
        EXPECT_EQ(none.fileCalls, (record::FileCalls{.opened = 1, .read = 0, .written = 1})) << root;
        EXPECT_EQ(none.files.at(0).bytes.size(), 4U);
        EXPECT_THAT(boot("make a file", {{Call::FileOpened, {0}}}).files, IsEmpty());
        EXPECT_EQ(boot("make a file", {{Call::FileWritten, {0}}}).files.at(0).bytes.size(), 0U) << root;
        EXPECT_EQ(boot("make a file", {{Call::FileWritten, {1}}}).files.at(0).bytes.size(), 4U);
        EXPECT_EQ(boot("use rare calls", {{Call::FileRead, {0}}, {Call::FileWritten, {1}}}).fileCalls,
                  (record::FileCalls{.opened = 1, .read = 2, .written = 2}));
        const record::BootRecord unasked = boot("throw", {{Call::PropertyAsked, {0}}});
        EXPECT_TRUE(unasked.ended->returned());
        EXPECT_EQ(unasked.fileCalls, std::nullopt);
        EXPECT_EQ(record::EventsOf<record::PropertyAsked>(unasked).at(0)->value, std::nullopt);
        EXPECT_EQ(boot("crash", {{Call::FileRead, {}}}).ended->signal, SIGSEGV);
        EXPECT_EQ(boot("", {}).fileCalls, std::nullopt);
    }
}

TEST_F(Boot, ALinkToThisMachinesRootIsRefused) {
    fs::create_directory_symlink("/", mFolder.path() / "link");
    BootOptions options = kOptions;
    options.root = mFolder.path() / "link";
    EXPECT_THROW(supervisor::Boot(PhoneThatMakesIt(""), options), virtualphone::PhoneFileError);
    fs::remove(options.root);
}

/// Ends as its child does, with nothing left: neither folder nor process.
TEST_F(Boot, AnEndingSignalEndsTheBootFirst) {
    for (const int signal :
         {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGUSR1, SIGXCPU, SIGIO, SIGPWR, SIGSTKFLT, SIGRTMIN}) {
        const pid_t program = fork();
        if (program == 0) {
            std::signal(signal, SIG_DFL);
            const supervisor::EndOnSignal endOnSignal;
            BootOptions options = kOptions;
            options.timeout = std::chrono::seconds(20);
            supervisor::RunningBoot boot(PhoneThatMakesIt("hang"), options);
            kill(getpid(), signal);
            boot.finish();
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(program, &status, 0), program);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        EXPECT_TRUE(fs::is_empty(mFolder.path()));
    }
}

TEST_F(Boot, WhatAKilledProgramLeftIsRemovedByTheNext) {
    int status = 0;
    if (fork() == 0) {
        const virtualphone::TemporaryFolder left;
        raise(SIGKILL);
    }
    wait(&status);
    const virtualphone::TemporaryFolder next;
    EXPECT_EQ(std::distance(fs::directory_iterator(mFolder.path()), {}), 1);
}

}  // namespace
