#include <algorithm>
#include <variant>
#include <vector>

#include <gmock/gmock.h>

#include "analysis/Why.h"
#include "tests/analysis/Boots.h"

namespace {

using analysis::Reason;

/// The reason of the only item that a text names.
Reason Why(const analysis::Boot& boot, const std::string& name, std::size_t device = 0) {
    const analysis::Course course = analysis::CourseOf(boot.record);
    const std::vector<analysis::Item> items = analysis::ItemsNamed(name);
    EXPECT_EQ(items.size(), 1U) << name;
    return analysis::WhyOf(boot, course, analysis::DevicesOf(boot, course), items.at(0), device);
}

std::vector<std::string> Questions(const Reason& reason) {
    std::vector<std::string> words;
    for (const analysis::Question& question : reason.questions) {
        words.push_back(question.words);
    }
    return words;
}

TEST(Why, NamesItemsByWholeNameEndOrNumber) {
    const auto names = [](std::string_view text) {
        std::vector<std::string> found;
        for (const analysis::Item& item : analysis::ItemsNamed(text)) {
            found.push_back(item.name);
        }
        return found;
    };
    using testing::ElementsAre;
    EXPECT_THAT(names("0x91010021"), ElementsAre("ZELVAN_CAMERA_ROLEID"));
    EXPECT_THAT(names("zelvan_camera_roleid"), ElementsAre("ZELVAN_CAMERA_ROLEID"));
    EXPECT_THAT(names("camera_roleid"), ElementsAre("ZELVAN_CAMERA_ROLEID"));
    EXPECT_THAT(names("oiscal.state"), ElementsAre("persist.vendor.camera.zv.oiscal.state"));
    EXPECT_THAT(names("dcal.wt.data"), ElementsAre("/data/vendor/camera/com.zelvan.dcal.wt.data"));
    EXPECT_THAT(names("FAKESAT"), ElementsAre("ZELVAN_CAMERA_FAKESAT_FAKESATSIZE"));
    EXPECT_THAT(names("BOKEHINFO_MASTERCAMERAID").size(), 2);
    EXPECT_THAT(names(""), testing::IsEmpty());
    EXPECT_THAT(names("no such thing"), testing::IsEmpty());
    EXPECT_EQ(analysis::NamesLike("ZELVAN_CAMERA_ROLE").front(), "ZELVAN_CAMERA_ROLEID");
}

TEST(Why, TellsTheOperationsOwnShareOfTheBoot) {
    const analysis::Boot boot = BootOf(SamplePhone("halcyrion"));
    // The third of four modules: what was asked for the others is not its.
    const Reason fuseId = Why(boot, "vendor.camera.sensor.t.fuseID");
    EXPECT_TRUE(fuseId.published());
    EXPECT_THAT(Questions(fuseId), testing::Contains("static information of device bit 0x4: found"));
    EXPECT_THAT(Questions(fuseId),
                testing::Not(testing::Contains("static information of device bit 0x2: found")));
    const Reason tele = Why(boot, "dcal.wt.data");
    EXPECT_EQ(record::TextOf(*tele.lines.back().line),
              "[master(0):slave(20)] match persistFile is com.zelvan.dcal.wt.bin");
    // Device 4 is the seventh to be updated.
    const Reason zoom = Why(boot, "FAKESATSIZE", 6);
    EXPECT_EQ(zoom.lines.at(0).alike, 8U);
    EXPECT_THAT(
        Questions(zoom),
        testing::ElementsAre("the logical device list: found", "whether device 4 has several sensors: yes",
                             "sensor ids of device 4: 0, 3, 2", "the sensor list: found",
                             "sensor object of sensor id 0: found", "device id of sensor index 0: 7",
                             "reply to sensor command 0x4036: 1, 2"));
}

TEST(Why, TellsOfATagWhyThereIsNoDevice) {
    virtualphone::PhoneDescription phone = SamplePhone("halcyrion");
    phone.faults.logicalDeviceList = true;
    analysis::Boot boot = BootOf(std::move(phone));
    EXPECT_EQ(Why(boot, "CAMERA_ROLEID").noDevices, "no logical device list");
    boot.record.events.resize(100);
    EXPECT_EQ(Why(boot, "CAMERA_ROLEID").noDevices, "the boot did not come to them");
}

TEST(Why, TellsWhatAModuleWithoutFuseIdLacks) {
    virtualphone::PhoneDescription phone = SamplePhone("halcyrion");
    phone.sensors[0].eeprom->readReturns = 0;
    phone.sensors[2].eeprom->image.assign(16384, 0xFF);
    phone.sensors.pop_back();
    const analysis::Boot boot = BootOf(std::move(phone));
    const std::pair<const char*, const char*> kCases[] = {
        {"sensor.w.fuseID", "the memory of back main cannot be read"},
        {"sensor.f.fuseID", ""},
        {"rearTele.fuseID", "the memory of back tele names a maker that nobody knows (0xFF)"},
        {"rearUltra.fuseID", "back ultra is not fitted"},
        {"sensor.f.sensorInfo", ""},
    };
    for (const auto& [property, reason] : kCases) {
        EXPECT_EQ(Why(boot, property).noFuseId, reason) << property;
    }
}

TEST(Why, TellsThatTheBootEndedBeforeAnOperationCould) {
    analysis::Boot boot = BootOf(SamplePhone("halcyrion"));
    EXPECT_FALSE(Why(boot, "SMARTFOV_ZOOM_RATIO").endedInIt);
    const auto merge =
        std::find_if(boot.record.events.begin(), boot.record.events.end(),
                     [](const auto& event) { return std::holds_alternative<record::ProviderMerge>(event); });
    boot.record.events.erase(merge, boot.record.events.end());
    boot.record.ended = record::Ended{.how = record::Ended::How::Timeout, .what = {}, .step = {}};
    EXPECT_TRUE(Why(boot, "CAMERA_ROLEID").endedInIt);
    EXPECT_FALSE(Why(boot, "vendor.camera.sensor.t.fuseID").endedInIt);
}

TEST(Why, TellsWhereTheOperationGaveUp) {
    virtualphone::PhoneDescription phone = SamplePhone("halcyrion");
    phone.faults.sensorObjects = {tables::SensorIndex{0}};
    phone.faults.metadataUpdate = {{0x91010003, -5}};
    phone.faults.propertySet = {"vendor.camera.sensor.zv.databin.existmask"};
    const analysis::Boot boot = BootOf(std::move(phone));
    const Reason zoom = Why(boot, "FAKESATSIZE");
    EXPECT_FALSE(zoom.published());
    ASSERT_NE(zoom.gaveUp, nullptr);
    EXPECT_EQ(record::TextOf(*zoom.gaveUp), "Cannot get halsensor");
    EXPECT_EQ(Why(boot, "HDHDR_SUPPORTED").refused, -5);
    const Reason mask = Why(boot, "existmask");
    EXPECT_FALSE(mask.published());
    EXPECT_EQ(mask.property->value, "17");
    EXPECT_FALSE(Why(boot, "SMARTFOV_ZOOM_RATIO").appliesToRole);
    EXPECT_EQ(Why(boot, "eeprom_raw_data_dump_back_main").gaveUp, nullptr);
}

}  // namespace
