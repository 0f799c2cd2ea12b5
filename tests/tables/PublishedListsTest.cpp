#include <fstream>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"
#include "tables/PublishedTags.h"

namespace tables {

namespace {

TEST(PublishedLists, OperationsStandInTheirSourceFiles) {
    std::set<std::string> publishing;
    for (const PublishedTag& tag : PublishedTags()) {
        publishing.insert(tag.operation.name);
    }
    for (const PublishedProperty& property : PublishedProperties()) {
        publishing.insert(property.operation.name);
    }
    for (const PublishedFile& file : PublishedFiles()) {
        publishing.insert(file.operation.name);
    }
    for (const PublishingOperation& operation : PublishingOperations()) {
        EXPECT_EQ(publishing.erase(operation.name), 1U) << operation.name << " publishes nothing";
        std::ifstream source(SOURCE "/" + std::string(operation.sourceFile));
        std::ostringstream text;
        text << source.rdbuf();
        EXPECT_NE(text.str().find("CameraPlatformInfoZelvan::" + std::string(operation.name) + "("),
                  std::string::npos)
            << operation.name << " is not in " << operation.sourceFile;
    }
    EXPECT_TRUE(publishing.empty()) << *publishing.begin();
}

TEST(PublishedLists, LookUps) {
    const auto propertyOf = [](const char* name) {
        const PublishedProperty* const row = FindPublishedProperty(name);
        return row == nullptr ? "none" : row->operation.name + (" " + std::to_string(row->roleId));
    };
    EXPECT_EQ(propertyOf("persist.vendor.camera.oisHvXyMatch"), "OverriderOisCamCalData -1");
    EXPECT_EQ(propertyOf("vendor.camera.sensor.rearUltra.fuseID"), "SetFuseIdProp 21");
    EXPECT_EQ(propertyOf("vendor.camera.sensor.t4x.sensorInfo"), "SetSensorInfoProp 23");
    EXPECT_EQ(propertyOf("persist.vendor.camera.sensor.faux.afInfo"), "SetAFInfoProp 40");
    EXPECT_EQ(propertyOf("vendor.camera.sensor.m.fuseID"), "none");

    const auto fileOf = [](const char* path) {
        const PublishedFile* const row = FindPublishedFile(path);
        return row == nullptr ? "none" : row->operation.name;
    };
    EXPECT_STREQ(fileOf("/data/vendor/camera/com.zelvan.dcal.wt.data"), "DualCameraDataDumpFile");
    EXPECT_STREQ(fileOf("/data/vendor/camera/eeprom_raw_data_dump_back_tel4x"), "DumpEepromRawData");
    EXPECT_STREQ(fileOf("/data/vendor/camera/eeprom_raw_data_dump_"), "none");
    EXPECT_STREQ(fileOf("/data/vendor/camera/com.zelvan.dcal.wt.data2"), "none");

    std::string steps;
    for (const PublishedTag* tag : FindPublishedTags("ZELVAN_CAMERA_BOKEHINFO_SLAVEOPTSIZE")) {
        steps += std::to_string(tag->tag & 0xFFU) + " " + tag->operation.step + ", ";
    }
    EXPECT_EQ(steps, "174 UpdateBokehOptimalSizeInfo, 254 UpdateBokehOptimalSizeInfo, ");
    EXPECT_TRUE(FindPublishedTags("ZELVAN_CAMERA").empty());
    EXPECT_EQ(FindPublishedTag(0x91010023)->name, std::string("ZELVAN_CALIBTOOL_FILE_NAME"));
    EXPECT_EQ(FindPublishedTag(0x91010020), nullptr);
}

}  // namespace

}  // namespace tables
