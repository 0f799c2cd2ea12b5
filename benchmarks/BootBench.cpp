// What ExposureModuleInfo costs: beside the least that the same boot can cost on the same platform, and by
// the number of camera devices.

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/Replay.h"
#include "platform/IMetadataProvider.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "virtualphone/MetadataValues.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/TemporaryFolder.h"
#include "virtualphone/VirtualPhone.h"

namespace {

/// A metadata provider that keeps nothing. Thousands of devices fill the machine's caches and this process's
/// heap with what the virtual phone keeps of them, and that would be measured instead of the plug-in.
class ForgetfulProvider final : public NSCam::IMetadataProvider {
  public:
    const NSCam::IMetadata& staticCharacteristics() const override { return mNothing; }
    void mergeStaticMetadata(const NSCam::IMetadata& additional) override {
        if (mWatched != nullptr) {
            (*mWatched)(additional);
        }
    }

    using Watch = std::function<void(const NSCam::IMetadata&)>;
    /// Tells of each merge while `work` runs.
    template <typename Work>
    void watch(const Watch& watch, Work work) {
        mWatched = &watch;
        work();
        mWatched = nullptr;
    }

  private:
    NSCam::IMetadata mNothing;
    const Watch* mWatched = nullptr;
};

/// The one that all devices have while it is set.
ForgetfulProvider* gForgetfulProvider = nullptr;

}  // namespace

// The linker takes the first name for the platform's function, and the second for what the plug-in's objects
// call.
NSCam::IMetadataProvider* PlatformProvider(unsigned id) asm(
    "__real__ZN5NSCam25NSMetadataProviderManager18valueForByDeviceIdEj");
NSCam::IMetadataProvider* Provider(unsigned id) asm(
    "__wrap__ZN5NSCam25NSMetadataProviderManager18valueForByDeviceIdEj");
NSCam::IMetadataProvider* Provider(unsigned id) {
    return gForgetfulProvider != nullptr ? gForgetfulProvider : PlatformProvider(id);
}

namespace {

/// Each boot has a fresh instance, and the device table without the rows that an earlier boot added: what a
/// phone's start finds.
class Plugin : public CameraPlatformInfoZelvan {
  public:
    Plugin() {
        static const NamedTable<RoleIdDesc>::Rows kRows = DeviceId2RoleId;
        DeviceId2RoleId = kRows;
    }
};

/// Keeps the events while it is told to. Beyond that a record would grow without end and outweigh what is
/// measured.
class Sink final : public record::EventSink {
  public:
    void take(record::Event event) override {
        if (mKeeps) {
            mEvents.push_back(std::move(event));
        }
    }

    template <typename Work>
    std::vector<record::Event> eventsOf(Work work) {
        mKeeps = true;
        work();
        mKeeps = false;
        return std::exchange(mEvents, {});
    }

  private:
    bool mKeeps = false;
    std::vector<record::Event> mEvents;
};

void Boot() {
    Plugin plugin;
    plugin.ExposureModuleInfo();
}

/// A phone that is switched on.
class BenchPhone {
  public:
    explicit BenchPhone(virtualphone::PhoneDescription description)
        : mPhone(std::move(description), mRoot.path(), mSink) {}

    /// The first boot: every measured one finds what it left.
    std::vector<record::Event> boot() { return mSink.eventsOf(Boot); }

    /// @throws std::runtime_error for a replay that does something else than the boot did.
    Replay replay() {
        const std::vector<record::Event> again = mSink.eventsOf(Boot);
        Replay replay(again, mPhone.changedFiles());
        if (mSink.eventsOf([&] { replay.run(); }) != again) {
            throw std::runtime_error("the replay is not what the boot did");
        }
        return replay;
    }

  private:
    Sink mSink;
    virtualphone::TemporaryFolder mRoot;
    virtualphone::VirtualPhone mPhone;
};

virtualphone::PhoneDescription Halcyrion() {
    return virtualphone::ReadPhoneFile(PHONES "/halcyrion.json");
}

/// The devices of halcyrion and their members: each has a set of metadata.
constexpr std::size_t kHalcyrionSets = 17;

/// halcyrion with so many camera devices more, each with one of its four sensors.
virtualphone::PhoneDescription PhoneWithFurtherDevices(int count) {
    virtualphone::PhoneDescription phone = Halcyrion();
    const auto own = static_cast<int>(phone.logicalDevices.size());
    for (int i = own; i < own + count; ++i) {
        const auto at = static_cast<std::size_t>(i) % phone.sensors.size();
        const virtualphone::SensorDescription& sensor = phone.sensors[at];
        phone.logicalDevices.push_back({.name = phone.logicalDevices[at == 0 ? 7 : at].name,
                                        .multiSensor = false,
                                        .members = {tables::MemberSensorId{static_cast<int>(at)}},
                                        .sensorBits = sensor.deviceBits});
        phone.sensorAliases[tables::SensorIndex{i}] = {.deviceBits = sensor.deviceBits,
                                                       .deviceId = sensor.deviceId};
    }
    return phone;
}

/// Boots; the comparison holds only while the devices from `first` on are alike, each as the fourth before
/// it.
void CheckDevicesAreAlike(ForgetfulProvider& provider, std::size_t first) {
    constexpr std::size_t kSensors = 4;
    std::array<record::TagSet, kSensors> latest;
    std::size_t merges = 0;
    provider.watch(
        [&](const NSCam::IMetadata& metadata) {
            record::TagSet tags = virtualphone::TagsOf(metadata);
            if (merges >= first + kSensors && tags != latest[merges % kSensors]) {
                throw std::runtime_error("the further devices differ in what is published for them");
            }
            latest[merges++ % kSensors] = std::move(tags);
        },
        Boot);
}

void BM_Boot(benchmark::State& state) {
    BenchPhone phone(Halcyrion());
    phone.boot();
    for (auto _ : state) {
        Boot();
    }
}

void BM_Floor(benchmark::State& state) {
    BenchPhone phone(Halcyrion());
    phone.boot();
    const Replay replay = phone.replay();
    for (auto _ : state) {
        replay.run();
    }
}

void BM_FurtherDevices(benchmark::State& state) {
    BenchPhone phone(PhoneWithFurtherDevices(static_cast<int>(state.range(0))));
    ForgetfulProvider provider;
    gForgetfulProvider = &provider;
    CheckDevicesAreAlike(provider, kHalcyrionSets);
    for (auto _ : state) {
        Boot();
    }
    gForgetfulProvider = nullptr;
}

BENCHMARK(BM_Boot)->Name("boot");
BENCHMARK(BM_Floor)->Name("floor");
BENCHMARK(BM_FurtherDevices)->Name("further")->Arg(0)->Arg(8)->Arg(64)->Arg(512)->Arg(4096);

}  // namespace

int main(int argc, char** argv) {
    try {
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
            return 2;
        }
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
    } catch (const std::exception& error) {
        std::cerr << "BootBench: " << error.what() << '\n';
        return 1;
    }
}
