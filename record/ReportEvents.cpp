#include "record/internal/ReportEvents.h"

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace record {

namespace {

template <typename Item>
Item ReadItem(const ReportNode& node) {
    if constexpr (std::is_same_v<Item, Blob>) {
        return node.bytes();
    } else if constexpr (std::is_same_v<Item, float>) {
        constexpr std::array<const char*, 3> kNoNumbers = {"NaN", "Infinity", "-Infinity"};
        constexpr float kInfinity = std::numeric_limits<float>::infinity();
        constexpr std::array<float, 3> kValues = {std::numeric_limits<float>::quiet_NaN(), kInfinity,
                                                  -kInfinity};
        return node.json().is_number() ? node.json().get<float>() : kValues[node.choice(kNoNumbers)];
    } else {
        return node.number<Item>();
    }
}

template <typename Item>
TagValues ReadItems(const ReportNode& node) {
    std::vector<Item> items;
    node.each([&items](const ReportNode& item) { items.push_back(ReadItem<Item>(item)); });
    return TagValues(std::move(items));
}

Tag ReadTag(const ReportNode& node) {
    constexpr std::array kReaders = {
        ReadItems<std::int32_t>, ReadItems<std::int32_t>, ReadItems<std::int64_t>,
        ReadItems<float>,        ReadItems<std::uint8_t>, ReadItems<Blob>,
    };
    const ReportObject members(node, {"tag", "name", "type", "values"});
    if (const ReportNode* const name = members.find("name")) {
        name->text();
    }
    const std::size_t type = members.at("type").choice(tables::kTagItemTypeNames);
    Tag tag{.tag = members.at("tag").hexNumber(), .values = kReaders[type](members.at("values"))};
    if (static_cast<std::size_t>(tag.values.type()) != type) {
        members.at("values").fail("no values where the type is \"none\", and values where it is another",
                                  std::to_string(tag.values.count()));
    }
    return tag;
}

}  // namespace

LogLine ReadLogLine(const ReportNode& node) {
    const ReportObject line(node, {"priority", "tag", "message"});
    return {.priority = line.at("priority").number<int>(),
            .tag = line.at("tag").text(),
            .message = line.at("message").text()};
}

PropertySet ReadPropertySet(const ReportNode& node) {
    const ReportObject set(node, {"name", "value", "stored"});
    return {
        .name = set.at("name").text(), .value = set.at("value").text(), .stored = set.at("stored").flag()};
}

EepromRead ReadEepromRead(const ReportNode& node) {
    const ReportObject members(node, {"sensorId", "deviceBit", "offset", "length", "read"});
    EepromRead read{.sensorId = members.at("sensorId").number<std::uint32_t>(),
                    .deviceBit = members.at("deviceBit").number<std::uint32_t>(),
                    .offset = members.at("offset").number<std::uint32_t>(),
                    .length = members.at("length").number<std::uint32_t>(),
                    .read = {}};
    if (const ReportNode* const came = members.find("read")) {
        read.read = came->number<std::uint32_t>();
    }
    return read;
}

HandOver ReadHandOver(const ReportNode& node) {
    return {.block = ReportObject(node, {"hex"}).at("hex").bytes()};
}

ProviderMerge ReadProviderMerge(const ReportNode& node) {
    const ReportObject members(node, {"provider", "metadata"});
    ProviderMerge merge{.provider = members.at("provider").hexNumber(), .metadata = {}};
    members.at("metadata").each([&merge](const ReportNode& tagNode) {
        Tag tag = ReadTag(tagNode);
        if (!merge.metadata.empty() && merge.metadata.back().tag >= tag.tag) {
            tagNode.fail("tags in ascending order", "one below the tag before it");
        }
        merge.metadata.push_back(std::move(tag));
    });
    return merge;
}

Event ReadInlineEvent(const ReportNode& node) {
    const Json& json = node.json();
    if (json.contains("asked")) {
        const ReportObject members(node, {"asked", "value"});
        PropertyAsked asked{.name = members.at("asked").text(), .value = {}};
        if (!members.at("value").json().is_null()) {
            asked.value = members.at("value").text();
        }
        return asked;
    }
    if (json.contains("opened")) {
        return PathOpened{.path = ReportObject(node, {"opened"}).at("opened").text()};
    }
    if (json.contains("provider")) {
        return ProviderAsked{.provider = ReportObject(node, {"provider"}).at("provider").hexNumber()};
    }
    if (json.contains("autofocusRead")) {
        const ReportObject members(node, {"autofocusRead", "succeeded"});
        return AutofocusRead{.deviceBit = members.at("autofocusRead").number<std::uint32_t>(),
                             .succeeded = members.at("succeeded").flag()};
    }
    if (json.contains("stored")) {
        const ReportObject members(node, {"stored", "result", "count"});
        return TagStored{.tag = members.at("stored").hexNumber(),
                         .result = members.at("result").number<int>(),
                         .count = members.at("count").number<std::uint32_t>()};
    }
    if (json.contains("query")) {
        const ReportObject members(node, {"query", "about", "answer"});
        Asked asked{.query = static_cast<Query>(members.at("query").choice(kQueryNames)),
                    .about = members.at("about").number<std::int64_t>(),
                    .answer = {},
                    .text = {}};
        if (asked.query == Query::DeviceName) {
            asked.text = members.at("answer").text();
        } else {
            members.at("answer").each(
                [&asked](const ReportNode& item) { asked.answer.push_back(item.number<std::int64_t>()); });
        }
        return asked;
    }
    node.fail("an event");
}

}  // namespace record
