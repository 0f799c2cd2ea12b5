#include <cmath>
#include <cstdint>

#include "platform/IMetadataProvider.h"
#include "tests/support/Describe.h"
#include "tests/support/TestPhone.h"

namespace {

using NSCam::IMetadata;
using testing::ElementsAre;
using testing::IsEmpty;

NSCam::IMetadataProvider& Provider(std::uint32_t id) {
    return *NSCam::NSMetadataProviderManager::valueForByDeviceId(id);
}

template <typename Item>
IMetadata::IEntry Entry(std::uint32_t tag, std::initializer_list<Item> items) {
    IMetadata::IEntry entry(tag);
    for (const Item& item : items) {
        entry.push_back(item);
    }
    return entry;
}

TEST(Metadata, FirstItemDecidesTheType) {
    TestPhone phone;
    IMetadata::IEntry entry(0x10);
    EXPECT_EQ(Describe(entry), "none");
    entry.push_back<int, unsigned char>(300);
    entry.push_back(1.5F);
    entry.push_back<int, std::int64_t>(7);
    entry.push_back<int, unsigned char>(2);
    EXPECT_EQ(Describe(entry), "byte [44, 2]");
    EXPECT_EQ(entry.itemAt<unsigned char>(1), 2);
    EXPECT_EQ(entry.itemAt<unsigned char>(2), 0);
    EXPECT_EQ(entry.itemAt<float>(0), 0.0F);
    EXPECT_EQ(Describe(Entry(1, {entry.itemAt<IMetadata::Memory>(0)})), "memory [0 bytes]");
    const std::string dropped = "VirtualPhone: tag 0x10: dropped an item of another type than the first";
    EXPECT_THAT(phone.errors(), ElementsAre(dropped, dropped));
}

TEST(Metadata, UpdateReplacesAndStoresUnderTheGivenTag) {
    IMetadata metadata;
    metadata.update(3, Entry(3, {1, 2}));
    metadata.update(3, Entry(3, {0.6F}));
    metadata.update(2, Entry<std::int64_t>(9, {1LL << 40}));
    metadata.update(1, IMetadata::IEntry(1));
    EXPECT_EQ(DescribeAll(metadata),
              (Tags{{"0x1", "none"}, {"0x2", "int64 [1099511627776]"}, {"0x3", "float [0.6]"}}));
    EXPECT_EQ(metadata.entryFor(2).tag(), 2U);
    EXPECT_TRUE(metadata.entryFor(9).isEmpty());
}

TEST(Metadata, MemoryGrowsWithZerosAndTakesItself) {
    IMetadata::Memory memory("ab", 2);
    memory.append(memory);
    memory.resize(6);
    memory.editArray()[5] = 'z';
    EXPECT_EQ(HexText(BlobOf(Entry(1, {memory}))), "61626162007A");
}

TEST(Metadata, ProvidersMergeOverWhatTheFileSays) {
    TestPhone phone(PhoneBuilder()
                        .holds(0x40007, 1, std::vector{24.0F, std::nanf(""), -HUGE_VALF})
                        .holds<std::int64_t>(0x40007, 2, {-1, INT64_MAX})
                        .holds<std::uint8_t>(0x40007, 3, {0xFF})
                        .holds<record::Blob>(0x40007, 4, {{1, 2}, {}})
                        .holds(0x40007, 5, {}));
    const Tags before{{"0x1", "float [24, nan, -inf]"},
                      {"0x2", "int64 [-1, 9223372036854775807]"},
                      {"0x3", "byte [255]"},
                      {"0x4", "memory [2 bytes, 0 bytes]"},
                      {"0x5", "none"}};
    EXPECT_EQ(DescribeAll(Provider(0x40007).staticCharacteristics()), before);
    EXPECT_THAT(DescribeAll(Provider(1).staticCharacteristics()), IsEmpty());
    EXPECT_THAT(phone.record().devices, IsEmpty());

    IMetadata additional;
    additional.update(3, Entry(3, {60}));
    additional.update(6, Entry(6, {61}));
    Provider(0x40007).mergeStaticMetadata(additional);
    additional.update(6, Entry(6, {62}));
    Provider(1).mergeStaticMetadata(additional);

    Tags after = before;
    after["0x3"] = "int32 [60]";
    after["0x6"] = "int32 [61]";
    EXPECT_EQ(DescribeAll(phone.phone().staticMetadata(0x40007)), after);
    const auto devices = phone.record().devices;
    ASSERT_EQ(devices.size(), 2U);
    EXPECT_EQ(devices[0].provider, 0x40007U);
    EXPECT_EQ(DescribeAll(devices[0].metadata), (Tags{{"0x3", "int32 [60]"}, {"0x6", "int32 [61]"}}));
    EXPECT_EQ(devices[1].provider, 1U);
    EXPECT_EQ(DescribeAll(devices[1].metadata), (Tags{{"0x3", "int32 [60]"}, {"0x6", "int32 [62]"}}));
}

TEST(Metadata, UpdateFaultStoresNothingButKeepsThePast) {
    TestPhone phone(PhoneBuilder().holds(0, 7, {1}).faults({.metadataUpdate = {{7, -5}}}));
    IMetadata metadata;
    EXPECT_EQ(metadata.update(7, Entry(7, {2})), -5);
    EXPECT_EQ(metadata.update(8, Entry(8, {2})), 0);
    EXPECT_EQ(DescribeAll(metadata), (Tags{{"0x8", "int32 [2]"}}));
    EXPECT_EQ(DescribeAll(Provider(0).staticCharacteristics()), (Tags{{"0x7", "int32 [1]"}}));
}

}  // namespace
