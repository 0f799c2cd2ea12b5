#include "benchmarks/Replay.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>
#include <utility>
#include <variant>

#include <android/log.h>
#include <benchmark/benchmark.h>

#include "platform/DevicePath.h"
#include "platform/ImgSensorDrv.h"
#include "platform/Properties.h"
#include "platform/ThirdCalibration.h"
#include "tables/EepromLayouts.h"
#include "tables/PublishedTags.h"
#include "tables/StreamFormats.h"

using NSCam::IMetadata;

namespace {

constexpr std::size_t kTupleSize = 4;

/// How many whole numbers of a log line are printed by their values; any beyond stay text.
constexpr std::size_t kMostNumbers = 8;

/// A text as a format of printf, and the values of the whole numbers in it: those that stand by themselves,
/// and those of a size ("1920x1080").
std::pair<std::string, std::array<int, kMostNumbers>> FormatOf(std::string_view text) {
    std::string format;
    std::array<int, kMostNumbers> numbers{};
    std::size_t count = 0;
    const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
    const auto isPartOfWord = [&](char character) {
        return std::isalpha(static_cast<unsigned char>(character)) != 0 || character == '_' ||
               character == '.';
    };
    for (std::size_t at = 0; at < text.size();) {
        const auto rest = text.substr(at);
        const auto digits =
            static_cast<std::size_t>(std::find_if_not(rest.begin(), rest.end(), isDigit) - rest.begin());
        const auto isSize = [&](std::size_t x) {
            return x > 0 && x + 1 < text.size() && text[x] == 'x' && isDigit(text[x - 1]) &&
                   isDigit(text[x + 1]);
        };
        const std::size_t end = at + digits;
        const bool begins = at == 0 || !isPartOfWord(text[at - 1]) || isSize(at - 1);
        const bool ends = end == text.size() || !isPartOfWord(text[end]) || isSize(end);
        int value = 0;
        std::from_chars(rest.data(), rest.data() + digits, value);
        if (digits > 0 && begins && ends && count < numbers.size() &&
            std::to_string(value) == rest.substr(0, digits)) {
            numbers[count++] = value;
            format += "%d";
        } else if (digits > 0) {
            format += rest.substr(0, digits);
        } else {
            format += text[at] == '%' ? "%%" : std::string(1, text[at]);
        }
        at += std::max<std::size_t>(digits, 1);
    }
    return {format, numbers};
}

/// Items as the platform's entries take them.
template <typename Item>
std::vector<Item> ForPlatform(std::span<const Item> items) {
    return {items.begin(), items.end()};
}

std::vector<IMetadata::Memory> ForPlatform(std::span<const record::Blob> blobs) {
    std::vector<IMetadata::Memory> items;
    for (const record::Blob& blob : blobs) {
        items.emplace_back(blob.data(), blob.size());
    }
    return items;
}

/// Where in a list the tuples begin whose copies, under another format, are its last items.
template <typename Item>
std::vector<std::size_t> CopiedTuples(const std::vector<Item>& list, std::size_t before) {
    for (std::size_t first = 0; first < before; first += kTupleSize) {
        std::vector<std::size_t> copied;
        for (std::size_t i = 0; i < before; i += kTupleSize) {
            if (list[i] == list[first] && list[i + 3] != static_cast<Item>(STREAM_INPUT)) {
                copied.push_back(i);
            }
        }
        bool same = copied.size() * kTupleSize == list.size() - before;
        for (std::size_t tuple = 0; same && tuple < copied.size(); ++tuple) {
            const auto original = list.begin() + static_cast<std::ptrdiff_t>(copied[tuple]);
            same = std::equal(original + 1, original + kTupleSize,
                              list.begin() + static_cast<std::ptrdiff_t>(before + tuple * kTupleSize + 1));
        }
        if (same) {
            return copied;
        }
    }
    throw std::runtime_error("a list grew by something else than copies of its tuples");
}

/// A stored list grows: it is fetched, each tuple's format looked at, and some are copied under another.
template <typename Item>
void Grow(IMetadata& metadata, IMetadata::Tag_t tag, Item format, const std::vector<std::size_t>& copied) {
    IMetadata::IEntry entry = metadata.entryFor(tag);
    std::size_t next = 0;
    for (std::size_t i = 0; i < entry.count(); i += kTupleSize) {
        benchmark::DoNotOptimize(entry.itemAt<Item>(i));
        if (next < copied.size() && i == copied[next]) {
            ++next;
            const Item last = entry.itemAt<Item>(i + 3);
            entry.push_back(format);
            entry.push_back(entry.itemAt<Item>(i + 1));
            entry.push_back(entry.itemAt<Item>(i + 2));
            entry.push_back(last);
        }
    }
    metadata.update(tag, entry);
}

/// Android's three lists are made of this one.
void ReadStreams(const IMetadata& metadata) {
    const IMetadata::IEntry source = metadata.entryFor(SCALER_STREAM_CONFIGURATIONS_WITH_DURATIONS);
    for (std::size_t i = 0, count = source.count(); i < count; ++i) {
        benchmark::DoNotOptimize(source.itemAt<std::int64_t>(i));
    }
}

void ReadWhole(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status {};
    if (file < 0 || fstat(file, &status) != 0) {
        return;
    }
    if (S_ISDIR(status.st_mode)) {
        DIR* const folder = fdopendir(file);
        while (readdir(folder) != nullptr) {
        }
        closedir(folder);
        return;
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(status.st_size));
    benchmark::DoNotOptimize(read(file, bytes.data(), bytes.size()));
    close(file);
}

void WriteWhole(const std::string& path, const std::vector<std::uint8_t>& bytes) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    benchmark::DoNotOptimize(write(file, bytes.data(), bytes.size()));
    close(file);
}

}  // namespace

Replay::Replay(std::span<const record::Event> events, std::span<const record::ChangedFile> files) {
    for (const record::ChangedFile& file : files) {
        mWritten.emplace(file.path, file.bytes);
    }
    for (auto event = events.rbegin(); event != events.rend(); ++event) {
        if (const auto* const merge = std::get_if<record::ProviderMerge>(&*event)) {
            mSets.push_back(&merge->metadata);
        }
    }
    for (const record::Event& event : events) {
        mSteps.push_back(std::visit([this](const auto& kind) { return stepOf(kind); }, event));
    }
}

void Replay::run() const {
    Desk desk;
    for (const Step& step : mSteps) {
        step(desk);
    }
}

Replay::Step Replay::stepOf(const record::LogLine& line) {
    // The values of the lead and the numbers of the text are the platform's to print, as with every line of
    // the plug-in; what else the text has stands.
    const std::string operation(record::OperationOf(line));
    const std::size_t end = line.message.find("] ");
    if (operation.empty() || end == std::string::npos) {
        return [line](Desk&) {
            __android_log_print(line.priority, line.tag.c_str(), "%s", line.message.c_str());
        };
    }
    const auto [text, n] = FormatOf(std::string_view(line.message).substr(end + 2));
    static_assert(kMostNumbers == 8);
    return [line, operation, format = "(%d)[%s] " + text, n = n, id = gettid()](Desk&) {
        // Numbers that the format does not name are passed over.
        __android_log_print(line.priority, line.tag.c_str(), format.c_str(), id, operation.c_str(), n[0],
                            n[1], n[2], n[3], n[4], n[5], n[6], n[7]);
    };
}

Replay::Step Replay::stepOf(const record::PropertyAsked& property) {
    return [name = property.name](Desk&) {
        std::array<char, PROPERTY_VALUE_MAX> value{};
        benchmark::DoNotOptimize(property_get(name.c_str(), value.data(), ""));
    };
}

Replay::Step Replay::stepOf(const record::PropertySet& property) {
    return [property](Desk&) { property_set(property.name.c_str(), property.value.c_str()); };
}

Replay::Step Replay::stepOf(const record::EepromRead& read) {
    return [read](Desk& desk) {
        std::vector<std::uint8_t> image(tables::kEepromImageSize);
        desk.helper->readMemory(read.sensorId, read.deviceBit, read.offset, read.length, image.data());
        benchmark::DoNotOptimize(image.data());
    };
}

Replay::Step Replay::stepOf(const record::AutofocusRead& read) {
    return [bit = read.deviceBit](Desk& desk) {
        CamCal3ARecord record;
        desk.driver->readRecord(bit, CamCalRecordKind::ThreeA, record);
        desk.driver->release();
    };
}

Replay::Step Replay::stepOf(const record::PathOpened& opened) {
    const auto written = mWritten.find(opened.path);
    if (written == mWritten.end()) {
        return [path = opened.path](Desk&) { ReadWhole(DevicePath(path.c_str())); };
    }
    // What is written is read later.
    Step step = [path = opened.path, bytes = written->second](Desk&) {
        WriteWhole(DevicePath(path.c_str()), bytes);
    };
    mWritten.erase(written);
    return step;
}

Replay::Step Replay::stepOf(const record::Asked& question) {
    const auto about = static_cast<int>(question.about);
    switch (question.query) {
        case record::Query::LogicalDeviceList:
            return [](Desk& desk) {
                desk.devices = getMtkcamModuleFactory(MTKCAM_MODULE_LOGICAL_DEVICE_LIST)();
            };
        case record::Query::DeviceCount:
            return [](Desk& desk) { benchmark::DoNotOptimize(desk.devices->deviceCount()); };
        case record::Query::SensorIds:
            return [about](Desk& desk) { benchmark::DoNotOptimize(desk.devices->sensorIds(about)); };
        case record::Query::SensorDeviceIndex:
            return [about](Desk& desk) { benchmark::DoNotOptimize(desk.devices->sensorDeviceIndex(about)); };
        case record::Query::IsMultiSensorDevice:
            return
                [about](Desk& desk) { benchmark::DoNotOptimize(desk.devices->isMultiSensorDevice(about)); };
        case record::Query::SensorBits:
            return [about](Desk& desk) { benchmark::DoNotOptimize(desk.devices->sensorBits(about)); };
        case record::Query::DeviceName:
            return [about](Desk& desk) { benchmark::DoNotOptimize(desk.devices->deviceName(about)); };
        case record::Query::SensorList:
            return [](Desk& desk) { desk.sensors = NSCam::IHalSensorList::get(); };
        case record::Query::SensorCount:
            return [](Desk& desk) { benchmark::DoNotOptimize(desk.sensors->sensorCount()); };
        case record::Query::DeviceBits:
            return [about](Desk& desk) { benchmark::DoNotOptimize(desk.sensors->deviceBits(about)); };
        case record::Query::DeviceId:
            return [about](Desk& desk) { benchmark::DoNotOptimize(desk.sensors->deviceId(about)); };
        case record::Query::StaticInfoByBit:
            return [bit = static_cast<unsigned>(about)](Desk& desk) {
                NSCam::SensorStaticInfo info;
                desk.sensors->querySensorStaticInfo(bit, info);
            };
        case record::Query::StaticInfoById:
            return [about](Desk& desk) { benchmark::DoNotOptimize(desk.sensors->sensorStaticInfo(about)); };
        case record::Query::SensorObject:
            return [about](Desk& desk) { desk.sensor = desk.sensors->createSensor("Replay", about); };
        case record::Query::SensorCommand:
            return [about](Desk& desk) {
                std::vector<std::int32_t> reply;
                desk.sensor->sendCommand(0, static_cast<std::uint32_t>(about), 0, reply);
            };
        case record::Query::SensorDriver:
            return [about](Desk&) {
                benchmark::DoNotOptimize(
                    ImgSensorDrv::getInstance(static_cast<IMGSENSOR_SENSOR_IDX>(about))->getDrvInfo());
            };
        case record::Query::CalibrationDriver:
            return [](Desk& desk) { desk.driver = CamCalDrvBase::createInstance(); };
        case record::Query::CalibrationHelper:
            return [](Desk& desk) { desk.helper = NSCam::CamCalHelper::getInstance(); };
    }
    throw std::logic_error("a question without a name");
}

Replay::Step Replay::stepOf(const record::ProviderAsked& question) {
    return [id = question.provider](Desk& desk) {
        desk.provider = NSCam::NSMetadataProviderManager::valueForByDeviceId(id);
    };
}

Replay::Step Replay::stepOf(const record::TagStored& stored) {
    const record::TagSet& set = *mSets.back();
    const auto tag = std::find_if(set.begin(), set.end(),
                                  [&](const record::Tag& candidate) { return candidate.tag == stored.tag; });
    if (tag == set.end()) {
        throw std::runtime_error("a tag was stored and not merged");
    }
    const std::uint32_t before = std::exchange(mCounts[stored.tag], stored.count);
    const bool madeOfStreams = stored.tag == ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS && before == 0;
    return tag->values.visit([&](const auto& values) -> Step {
        auto items = ForPlatform(values.first(std::min<std::size_t>(stored.count, values.size())));
        using Item = typename decltype(items)::value_type;
        if constexpr (std::is_same_v<Item, std::int32_t> || std::is_same_v<Item, std::int64_t>) {
            if (before > 0 && before < stored.count) {
                return [id = stored.tag, format = items[before], copied = CopiedTuples(items, before)](
                           Desk& desk) { Grow<Item>(desk.metadata, id, format, copied); };
            }
        }
        return [id = stored.tag, items = std::move(items), madeOfStreams](Desk& desk) {
            if (madeOfStreams) {
                ReadStreams(desk.metadata);
            }
            IMetadata::IEntry entry(id);
            for (const Item& item : items) {
                entry.push_back(item);
            }
            desk.metadata.update(id, entry);
        };
    });
}

Replay::Step Replay::stepOf(const record::ProviderMerge&) {
    mSets.pop_back();
    mCounts.clear();
    return [](Desk& desk) {
        desk.provider->mergeStaticMetadata(desk.metadata);
        desk.metadata = IMetadata();
    };
}

Replay::Step Replay::stepOf(const record::HandOver& handOver) {
    return [block = handOver.block](Desk&) mutable {
        ThirdCalibration::set3rdCalibration(block.data(), static_cast<int>(block.size()));
    };
}
