#include <iterator>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "analysis/InfluenceSearch.h"

namespace {

using analysis::Effect;
using analysis::Effects;
using analysis::InfluenceSearch;
using analysis::Input;
using testing::ElementsAre;
using testing::Pair;
using virtualphone::PhoneDescription;
using Kind = Effect::Kind;

const std::vector<Input> kInputs = {{.kind = Input::Kind::File, .name = "/f", .size = 100},
                                    {.kind = Input::Kind::Property, .name = "mode"}};

PhoneDescription Phone() {
    PhoneDescription phone;
    phone.name = "small";
    phone.files["/f"] = std::vector<std::uint8_t>(100, 7);
    phone.properties["mode"] = "1";
    return phone;
}

/// Boots that publish byte 3 of a file, the sum of its bytes 10 to 49, a property, and another number each.
struct Boots {
    int count = 0;

    record::BootRecord operator()(const PhoneDescription& phone) {
        record::BootRecord boot;
        const auto set = [&](const char* name, std::string value) {
            boot.events.emplace_back(record::PropertySet{name, std::move(value), true});
        };
        if (const auto file = phone.files.find("/f"); file != phone.files.end()) {
            const std::vector<std::uint8_t>& bytes = file->second;
            set("byte", std::to_string(bytes[3]));
            set("sum", std::to_string(std::accumulate(bytes.begin() + 10, bytes.begin() + 50, 0)));
        }
        const auto mode = phone.properties.find("mode");
        set("mode", mode == phone.properties.end() ? "" : mode->second);
        set("clock", std::to_string(++count));
        return boot;
    }
};

Effects PropertiesNamed(const std::vector<std::string>& names) {
    Effects effects;
    for (const std::string& name : names) {
        effects.insert({.kind = Kind::Property, .name = name});
    }
    return effects;
}

TEST(InfluenceSearch, TellsWhichInputsDecideWhatIsPublished) {
    Boots boots;
    const record::BootRecord unchanged = boots(Phone());
    InfluenceSearch search(Phone(), unchanged, kInputs, 16);
    EXPECT_EQ(search.bytes(), 100U);
    std::vector<std::string> jobs = search.begin();
    while (!jobs.empty() || !search.allBegun()) {
        if (jobs.empty()) {
            jobs = search.beginInput();
        }
        for (const std::string& job : std::exchange(jobs, {})) {
            const std::vector<std::string> next = search.take(search.work(job, std::ref(boots)));
            jobs.insert(jobs.end(), next.begin(), next.end());
        }
    }
    EXPECT_EQ(search.settledBytes(), 100U);

    const analysis::Influence influence = search.influence(/*complete=*/true);
    EXPECT_EQ(influence.phone, "small");
    EXPECT_EQ(influence.step, 16U);
    EXPECT_TRUE(influence.complete);
    EXPECT_EQ(influence.boots, static_cast<std::size_t>(boots.count) - 1);
    EXPECT_EQ(influence.unsteady, PropertiesNamed({"clock"}));
    ASSERT_EQ(influence.inputs.size(), 2U);
    std::vector<std::pair<std::size_t, Effects>> ranges;
    for (const analysis::Range& range : influence.inputs[0].ranges) {
        EXPECT_FALSE(range.open);
        ranges.emplace_back(range.bytes.count, influence.sets[range.effects]);
    }
    EXPECT_THAT(ranges,
                ElementsAre(Pair(3, Effects()), Pair(1, PropertiesNamed({"byte"})), Pair(6, Effects()),
                            Pair(40, PropertiesNamed({"sum"})), Pair(50, Effects())));
    EXPECT_EQ(influence.sets[influence.inputs[0].without.value()], PropertiesNamed({"byte", "sum"}));
    EXPECT_EQ(influence.sets[influence.inputs[1].without.value()], PropertiesNamed({"mode"}));
    EXPECT_TRUE(influence.inputs[1].ranges.empty());
}

TEST(InfluenceSearch, KnowsWhatItKnewWhenItWasStopped) {
    Boots boots;
    const record::BootRecord unchanged = boots(Phone());
    InfluenceSearch search(Phone(), unchanged, kInputs, 16);
    search.take(search.work(search.begin().at(0), std::ref(boots)));
    const std::vector<std::string> jobs = search.beginInput();
    search.take(search.work(jobs.at(0), std::ref(boots)));  // without the file
    const analysis::Influence influence = search.influence(/*complete=*/false);
    EXPECT_FALSE(influence.complete);
    EXPECT_FALSE(search.allBegun());
    EXPECT_EQ(influence.sets[influence.inputs[0].without.value()], PropertiesNamed({"byte", "sum"}));
    ASSERT_EQ(influence.inputs[0].ranges.size(), 1U);
    EXPECT_TRUE(influence.inputs[0].ranges[0].open);
    EXPECT_FALSE(influence.inputs[1].without);
}

}  // namespace
