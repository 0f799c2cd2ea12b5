// What MetadataUpdateScaler costs a device, beside the bare cost of pushing and storing the same items.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <android/log.h>
#include <benchmark/benchmark.h>

#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "tables/PublishedTags.h"
#include "tables/StreamFormats.h"
#include "virtualphone/MetadataValues.h"
#include "virtualphone/TemporaryFolder.h"
#include "virtualphone/VirtualPhone.h"

using NSCam::IMetadata;

namespace {

virtualphone::SensorDescription Sensor(int deviceId, virtualphone::PixelSize full) {
    virtualphone::SensorDescription sensor;
    sensor.deviceId = tables::DeviceId{deviceId};
    sensor.pixelArray = {.width = 8192, .height = 6144};
    sensor.captureSize = full;
    sensor.modes[0] = full;
    return sensor;
}

/// A wide with super resolution, a front and a tele, each a logical device of its own.
virtualphone::PhoneDescription Phone() {
    virtualphone::PhoneDescription phone;
    phone.sensors = {Sensor(7, {4096, 3072}), Sensor(1, {3280, 2464}), Sensor(2, {4096, 3072})};
    phone.sensors[0].modes[8] = {.width = 8192, .height = 6144};
    phone.logicalDevices.resize(phone.sensors.size());
    for (std::size_t i = 0; i < phone.sensors.size(); ++i) {
        phone.logicalDevices[i].sensorBits = tables::DeviceBits{1U << i};
    }
    return phone;
}

/// The phone of this program.
class Bench {
  public:
    Bench() : mPhone(Phone(), mRoot.path(), mSink) {
        // The phone opens the log for all priorities, so this has to come after it.
        __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    }

    static IMetadata Scaler(int instanceId) {
        IMetadata meta;
        if (CameraPlatformInfoZelvan::CreateInstance()->MetadataUpdateScaler(meta, instanceId) != 0) {
            throw std::runtime_error("the scaler failed for device " + std::to_string(instanceId));
        }
        return meta;
    }

  private:
    /// Keeps nothing: a record would grow without end here and outweigh what is measured.
    struct Ignored final : record::EventSink {
        void take(record::Event) override {}
    } mSink;
    virtualphone::TemporaryFolder mRoot;
    virtualphone::VirtualPhone mPhone;
};

template <typename Item>
std::vector<Item> Items(const IMetadata& meta, IMetadata::Tag_t tag) {
    const IMetadata::IEntry entry = meta.entryFor(tag);
    std::vector<Item> items;
    for (std::size_t i = 0; i < entry.count(); ++i) {
        items.push_back(entry.itemAt<Item>(i));
    }
    return items;
}

/// A list as it is stored: its first items at once, and then, for each of further formats, read back and
/// stored again with copies of some tuples. Which ones is known beforehand; only the copied items are read.
template <typename Item>
struct StagedList {
    IMetadata::Tag_t tag;
    std::vector<Item> items;
    std::vector<std::size_t> copied;  ///< where the tuples begin
    std::vector<Item> formats;

    void store(IMetadata& meta) const {
        IMetadata::IEntry entry(tag);
        for (const Item& item : items) {
            entry.push_back<Item>(item);
        }
        meta.update(tag, entry);
        for (const Item& format : formats) {
            IMetadata::IEntry stored = meta.entryFor(tag);
            for (const std::size_t i : copied) {
                stored.push_back<Item>(format);
                stored.push_back<Item>(stored.itemAt<Item>(i + 1));
                stored.push_back<Item>(stored.itemAt<Item>(i + 2));
                stored.push_back<Item>(stored.itemAt<Item>(i + 3));
            }
            meta.update(tag, stored);
        }
    }
};

/// The stores of one device, taken from what the scaler published for it.
class BareStores {
  public:
    explicit BareStores(const IMetadata& published) {
        constexpr auto kJpeg = HAL_PIXEL_FORMAT_BLOB;
        constexpr auto kYuv = HAL_PIXEL_FORMAT_YCBCR_420_888;
        constexpr auto kPrivate = HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED;
        constexpr auto kYv12 = HAL_PIXEL_FORMAT_YV12;
        add(mSource, published, SCALER_STREAM_CONFIGURATIONS_WITH_DURATIONS);
        add(mInts, published, ZELVAN_SCALER_BINNING_FACTOR);
        add(mInts, published, ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS, kYuv, {kPrivate, kYv12});
        add(mLongs, published, ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS, kYuv, {kPrivate, kYv12});
        add(mLongs, published, ANDROID_SCALER_AVAILABLE_STALL_DURATIONS, kYuv, {kPrivate, kYv12});
        add(mInts, published, ZELVAN_SCALER_SUPER_RESOLUTION_STREAM_CONFIGURATIONS);
        add(mBytes, published, ZELVAN_SCALER_SUPER_RESOLUTION_MAIN);
        add(mInts, published, ANDROID_JPEG_MAX_SIZE);
        add(mInts, published, ZELVAN_SCALER_STREAM_CONFIGURATIONS, kJpeg, {kYuv, kPrivate, kYv12});
        add(mInts, published, ZELVAN_SCALER_CONFIGURED);
        check(published);
    }

    IMetadata store() const {
        IMetadata meta;
        StoreAll(mSource, meta);
        // Android's three lists are made of this one.
        const IMetadata::IEntry source = meta.entryFor(SCALER_STREAM_CONFIGURATIONS_WITH_DURATIONS);
        for (std::size_t i = 0; i < source.count(); ++i) {
            benchmark::DoNotOptimize(source.itemAt<std::int64_t>(i));
        }
        StoreAll(mInts, meta);
        StoreAll(mLongs, meta);
        StoreAll(mBytes, meta);
        return meta;
    }

  private:
    /// Takes a list apart again: the copies of the source format's tuples stand at its end.
    template <typename Item>
    static void add(std::vector<StagedList<Item>>& lists, const IMetadata& published, IMetadata::Tag_t tag,
                    std::int64_t source = 0, const std::vector<std::int64_t>& formats = {}) {
        StagedList<Item> list{.tag = tag, .items = Items<Item>(published, tag), .copied = {}, .formats = {}};
        if (list.items.empty()) {
            return;
        }
        if (!formats.empty()) {
            for (std::size_t i = 0; i < list.items.size(); i += 4) {
                if (list.items[i] == source && list.items[i + 3] != STREAM_INPUT) {
                    list.copied.push_back(i);
                }
            }
            for (const std::int64_t format : formats) {
                list.formats.push_back(static_cast<Item>(format));
            }
            list.items.resize(list.items.size() - 4 * list.copied.size() * formats.size());
        }
        lists.push_back(std::move(list));
    }

    template <typename Item>
    static void StoreAll(const std::vector<StagedList<Item>>& lists, IMetadata& meta) {
        for (const StagedList<Item>& list : lists) {
            list.store(meta);
        }
    }

    /// A comparison holds only while both sides store the same.
    void check(const IMetadata& published) const {
        if (virtualphone::TagsOf(published) != virtualphone::TagsOf(store())) {
            throw std::runtime_error("the bare stores are not those of the scaler");
        }
    }

    std::vector<StagedList<std::int64_t>> mSource;
    std::vector<StagedList<std::int32_t>> mInts;
    std::vector<StagedList<std::int64_t>> mLongs;
    std::vector<StagedList<unsigned char>> mBytes;
};

constexpr const char* kScaler = "scaler";
constexpr const char* kBare = "bare";

void BM_Scaler(benchmark::State& state) {
    const int instanceId = static_cast<int>(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(Bench::Scaler(instanceId));
    }
}

void BM_Bare(benchmark::State& state) {
    const BareStores stores(Bench::Scaler(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        benchmark::DoNotOptimize(stores.store());
    }
}

constexpr std::array<const char*, 3> kDevices = {"wide", "front", "tele"};

void Settings(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("device")->DenseRange(0, std::ssize(kDevices) - 1)->Repetitions(10)->MinTime(0.05);
}

BENCHMARK(BM_Scaler)->Name(kScaler)->Apply(Settings);
BENCHMARK(BM_Bare)->Name(kBare)->Apply(Settings);

/// The usual table, and after it the scaler's time over the bare time, each by its best repetition.
class RatioReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && !run.error_occurred) {
                double& best = mBest
                                   .try_emplace({run.run_name.function_name, run.run_name.args},
                                                std::numeric_limits<double>::infinity())
                                   .first->second;
                best = std::min(best, run.cpu_accumulated_time / static_cast<double>(run.iterations));
            }
        }
    }

    void Finalize() override {
        for (std::size_t i = 0; i < kDevices.size(); ++i) {
            const std::string args = "device:" + std::to_string(i);
            const auto scaler = mBest.find({kScaler, args});
            const auto bare = mBest.find({kBare, args});
            if (scaler != mBest.end() && bare != mBest.end()) {
                std::printf("%-5s: the scaler takes %.2f times the bare stores\n", kDevices[i],
                            scaler->second / bare->second);
            }
        }
    }

  private:
    std::map<std::pair<std::string, std::string>, double> mBest;  ///< seconds by function and arguments
};

}  // namespace

int main(int argc, char** argv) {
    // Interleaved, so that a busy moment of the machine hits both sides of a ratio alike.
    char interleaved[] = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, interleaved);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 1;
    }
    const Bench bench;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
}
