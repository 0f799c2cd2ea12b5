#include <set>
#include <vector>

#include <gmock/gmock.h>

#include "analysis/Steps.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"
#include "tables/PublishedTags.h"
#include "tests/analysis/Boots.h"

/// The lists say who publishes what; here the boots say whether that is so.
namespace {

/// The operations that speak in the line before and the line behind an event.
std::set<std::string_view> SpeakersAround(const record::BootRecord& boot, std::size_t at) {
    std::set<std::string_view> speakers;
    const auto take = [&](std::size_t i) {
        const auto* const line = std::get_if<record::LogLine>(&boot.events[i]);
        if (line != nullptr) {
            speakers.insert(record::OperationOf(*line));
        }
        return line != nullptr;
    };
    for (std::size_t i = at; i > 0 && !take(i - 1); --i) {
    }
    for (std::size_t i = at + 1; i < boot.events.size() && !take(i); ++i) {
    }
    return speakers;
}

/// Tags whose updates go unsaid, whatever becomes of them.
const std::set<std::uint32_t> kSilent = {ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS,
                                         ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS,
                                         ANDROID_SCALER_AVAILABLE_STALL_DURATIONS,
                                         ZELVAN_CAMERA_SMARTFOV_ZOOM_RATIO,
                                         ZELVAN_CAMERA_SAT_ZOOM_INFO,
                                         ZELVAN_CAMERA_SAT_INFO_FLAGS};

void CheckPublishers(const analysis::Boot& boot, bool tagsRefused) {
    for (std::size_t i = 0; i < boot.record.events.size(); ++i) {
        const record::Event& event = boot.record.events[i];
        if (const auto* const set = std::get_if<record::PropertySet>(&event)) {
            const tables::PublishedProperty* const row = tables::FindPublishedProperty(set->name);
            ASSERT_NE(row, nullptr) << set->name;
            EXPECT_THAT(SpeakersAround(boot.record, i), testing::Contains(row->operation.name)) << set->name;
        } else if (const auto* const stored = std::get_if<record::TagStored>(&event)) {
            const tables::PublishedTag* const row = tables::FindPublishedTag(stored->tag);
            ASSERT_NE(row, nullptr) << stored->tag;
            if (tagsRefused && !kSilent.contains(stored->tag)) {
                EXPECT_THAT(SpeakersAround(boot.record, i), testing::Contains(row->operation.name))
                    << row->name;
            }
        } else if (const auto* const merge = std::get_if<record::ProviderMerge>(&event)) {
            for (const record::Tag& tag : merge->metadata) {
                EXPECT_NE(tables::FindPublishedTag(tag.tag), nullptr) << tag.tag;
            }
        } else if (const auto* const opened = std::get_if<record::PathOpened>(&event)) {
            const tables::PublishedFile* const row = tables::FindPublishedFile(opened->path);
            const std::set<std::string_view> speakers = SpeakersAround(boot.record, i);
            if (row != nullptr && !speakers.contains("GetCalibDataFromDumpFile") && !row->perRole) {
                EXPECT_THAT(speakers, testing::Contains(row->operation.name)) << row->path;
            }
        }
    }
    for (const record::ChangedFile& file : boot.record.files) {
        EXPECT_NE(tables::FindPublishedFile(file.path), nullptr) << file.path;
    }
}

TEST(Publishers, AreThoseOfTheLists) {
    for (const char* const name : {"halcyrion", "fieldtrouble"}) {
        for (const bool tagsRefused : {false, true}) {
            for (const bool front : {false, true}) {
                virtualphone::PhoneDescription phone = SamplePhone(name);
                phone.properties[tables::kEepromDumpProperty] = "1";
                if (tagsRefused) {
                    for (const tables::PublishedTag& row : tables::PublishedTags()) {
                        phone.faults.metadataUpdate[row.tag] = -7;
                    }
                }
                if (front) {
                    phone.sensors.resize(2);
                    phone.files.clear();
                }
                const analysis::Boot boot = BootOf(std::move(phone));
                CheckPublishers(boot, tagsRefused);
                EXPECT_FALSE(boot.record.files.empty()) << name;
            }
        }
    }
}

TEST(Publishers, EveryStepOfTheListsIsOneThatRuns) {
    const analysis::Boot boot = BootOf(SamplePhone("halcyrion"));
    std::set<std::string_view> ran;
    for (const analysis::Step& step : analysis::CourseOf(boot.record).steps) {
        ran.insert(step.name);
    }
    for (const tables::PublishedTag& row : tables::PublishedTags()) {
        EXPECT_THAT(ran, testing::Contains(row.operation.step)) << row.name;
    }
    for (const tables::PublishedProperty& row : tables::PublishedProperties()) {
        EXPECT_THAT(ran, testing::Contains(row.operation.step)) << row.name;
    }
}

}  // namespace
