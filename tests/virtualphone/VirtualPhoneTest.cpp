#include <array>
#include <stdexcept>
#include <thread>

#include <android/log.h>

#include "platform/CamCalDrv.h"
#include "platform/DevicePath.h"
#include "platform/IHalSensorList.h"
#include "platform/ILogicalDeviceList.h"
#include "platform/IMetadataProvider.h"
#include "platform/ImgSensorDrv.h"
#include "platform/Properties.h"
#include "platform/ThirdCalibration.h"
#include "tests/support/CaughtCalls.h"
#include "tests/support/TestPhone.h"

namespace {

using testing::ElementsAre;

TEST(VirtualPhone, WithoutOneThePlatformIsEmpty) {
    { const TestPhone phone(PhoneOf({{}}).devices({{}}).property("a", "1")); }
    EXPECT_EQ(getMtkcamModuleFactory(MTKCAM_MODULE_LOGICAL_DEVICE_LIST), nullptr);
    EXPECT_EQ(NSCam::IHalSensorList::get(), nullptr);
    EXPECT_EQ(ImgSensorDrv::getInstance(static_cast<IMGSENSOR_SENSOR_IDX>(0)), nullptr);
    EXPECT_EQ(CamCalDrvBase::createInstance(), nullptr);
    EXPECT_EQ(NSCam::CamCalHelper::getInstance(), nullptr);
    EXPECT_EQ(NSCam::NSMetadataProviderManager::valueForByDeviceId(0), nullptr);
    EXPECT_EQ(DevicePath("/a"), "/a");
    EXPECT_EQ(property_get_int32("a", 5), 5);
    EXPECT_LT(property_set("a", "2"), 0);
    std::array<unsigned char, 2> block{1, 2};
    ThirdCalibration::set3rdCalibration(block.data(), 2);
}

TEST(VirtualPhone, OneAtATime) {
    TestPhone first;
    EXPECT_THROW(TestPhone(), std::logic_error);
    // The refused one takes neither the place nor the log of the first.
    __android_log_print(ANDROID_LOG_ERROR, "Tag", "still here");
    EXPECT_THAT(first.errors(), ElementsAre("Tag: still here"));
    EXPECT_EQ(DevicePath("/a"), first.phone().root().string() + "/a");
}

/// What a phone says that is made with these calls failing; empty for one that has been.
std::string RefusalOf(const virtualphone::DeviceFiles& files, const virtualphone::FailingCalls& failing) {
    record::Recorder recorder;
    try {
        const virtualphone::VirtualPhone phone({}, files, recorder, failing);
    } catch (const std::exception& error) {
        return error.what();
    }
    return "";
}

TEST(VirtualPhone, OneWhoseFileCallsCannotBeWatchedIsNone) {
    const virtualphone::TemporaryFolder root;
    const virtualphone::DeviceFiles files(root.path(), {});
    virtualphone::FailingCalls failing;
    for (std::uint64_t i = 0; i <= 64; ++i) {
        failing[virtualphone::Call::FileRead].insert(i);
    }
    EXPECT_EQ(RefusalOf(files, failing), "cannot let more than 64 calls of files of one kind fail");
    EXPECT_EQ(DevicePath("/a"), "/a");
}

TEST(VirtualPhone, CallsOfFilesAreWatchedOnceInAProcess) {
    if (!CallsOfFilesCanBeCaught()) {
        GTEST_SKIP() << "this kernel does not hand calls to a process";
    }
    const virtualphone::TemporaryFolder root;
    const virtualphone::DeviceFiles files(root.path(), {});
    const virtualphone::FailingCalls watched = {{virtualphone::Call::FileRead, {}}};
    EXPECT_EXIT(
        {
            const bool good =
                RefusalOf(files, {{virtualphone::Call::TagStored, {0}}}).empty() &&
                RefusalOf(files, watched).empty() &&
                RefusalOf(files, watched) == "the calls of files of this process are watched already";
            _exit(good ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(VirtualPhone, RecordsLogAndThirdCalibration) {
    const int formerPriority = __android_log_get_minimum_priority();
    {
        TestPhone phone;
        __android_log_print(ANDROID_LOG_VERBOSE, "Other", "%s", "v");
        __android_log_print(ANDROID_LOG_DEBUG, "CameraPlatformInfoZelvan", "(%d)[%s] a (b)", 12, "Run");
        __android_log_print(ANDROID_LOG_ERROR, "CameraPlatformInfoZelvan", "(%d)[%s] c", 12, "Run");
        EXPECT_THAT(phone.log(), ElementsAre("V Other: v", "D [Run] a (b)", "E [Run] c"));
        EXPECT_THAT(phone.errors(), ElementsAre("[Run] c"));
        EXPECT_EQ(phone.record().log[1].message, "(12)[Run] a (b)");

        std::vector<unsigned char> block{1, 2, 3};
        ThirdCalibration::set3rdCalibration(block.data(), 2);
        block[0] = 9;
        ThirdCalibration::set3rdCalibration(block.data(), 3);
        ThirdCalibration::set3rdCalibration(nullptr, 3);
        EXPECT_THAT(phone.record().thirdCalibration,
                    ElementsAre(ElementsAre(1, 2), ElementsAre(9, 2, 3), testing::IsEmpty()));
    }
    EXPECT_EQ(__android_log_get_minimum_priority(), formerPriority);
    testing::internal::CaptureStderr();
    __android_log_print(ANDROID_LOG_ERROR, "Tag", "to the terminal");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("to the terminal"));
}

TEST(VirtualPhone, TakesLinesFromAllThreads) {
    constexpr int kLines = 200;
    const TestPhone phone;
    std::vector<std::thread> threads;
    std::vector<std::vector<std::string>> written(4);
    for (std::size_t i = 0; i < written.size(); ++i) {
        const std::string tag = "T" + std::to_string(i);
        for (int line = 0; line < kLines; ++line) {
            written[i].push_back("I " + tag + ": " + std::to_string(line));
        }
        threads.emplace_back([tag] {
            for (int line = 0; line < kLines; ++line) {
                __android_log_print(ANDROID_LOG_INFO, tag.c_str(), "%d", line);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::vector<std::vector<std::string>> taken(written.size());
    for (const std::string& line : phone.log()) {
        taken.at(static_cast<std::size_t>(line.at(3) - '0')).push_back(line);
    }
    EXPECT_EQ(taken, written);
}

}  // namespace
