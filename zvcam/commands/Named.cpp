#include "zvcam/commands/Named.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include "formats/Hex.h"
#include "tables/PublishedTags.h"
#include "zvcam/views/DiagnosisWords.h"
#include "zvcam/views/Text.h"

namespace zvcam {

std::size_t DeviceNamed(const std::string& text, const std::vector<analysis::Device>& devices,
                        const record::BootRecord& boot) {
    if (const std::optional<std::size_t> found = analysis::FindDevice(text, devices)) {
        return *found;
    }
    std::string numbers;
    for (const analysis::Device& device : devices) {
        numbers += numbers.empty() ? "" : ", ";
        numbers += analysis::DeviceNumber(device.logicalIndex, device.memberId);
    }
    const std::string ending = EndingText(boot);
    throw std::runtime_error((ending.empty() ? "" : ending + ": ") + "no device \"" + Printable(text) +
                             "\" was updated; " + (numbers.empty() ? "none was" : "there are " + numbers));
}

analysis::Item ItemNamed(const std::string& text, const analysis::Device* device) {
    std::vector<analysis::Item> items = analysis::ItemsNamed(text);
    if (items.empty()) {
        throw std::runtime_error("nothing that is published is called \"" + Printable(text) +
                                 "\"; similar: " + Listed(analysis::NamesLike(text)));
    }
    if (items.size() == 2 && items[0].name == items[1].name) {
        return device != nullptr && analysis::AppliesTo(items[1].tag, *device) ? items[1] : items[0];
    }
    if (items.size() > 1) {
        std::vector<std::string> names;
        names.reserve(items.size());
        for (const analysis::Item& item : items) {
            names.push_back(item.name);
        }
        throw std::runtime_error("\"" + Printable(text) + "\" may be " + Listed(names));
    }
    return items[0];
}

std::set<std::uint32_t> TagsNamed(const std::string& text) {
    std::set<std::uint32_t> tags;
    for (const analysis::Item& item : analysis::ItemsNamed(text)) {
        if (!text.empty() && item.kind == analysis::Item::Kind::Tag) {
            tags.insert(item.tag);
        }
    }
    if (!text.empty() && tags.empty()) {
        const std::optional<std::uint32_t> number = formats::ParseNumber(text);
        if (!number) {
            std::vector<std::string> names;
            for (const tables::PublishedTag& tag : tables::PublishedTags()) {
                names.emplace_back(tag.name);
            }
            throw std::runtime_error("--tag: expected a tag's name, the end of one, or a number, got \"" +
                                     Printable(text) + "\"" +
                                     NearWords(analysis::NamesNear(std::move(names), text)));
        }
        tags.insert(*number);
    }
    return tags;
}

std::vector<analysis::Input> InputsNamed(std::vector<analysis::Input> inputs, const std::string& module) {
    if (module.empty()) {
        return inputs;
    }
    std::vector<std::string> names;
    for (analysis::Input& input : inputs) {
        if (input.kind == analysis::Input::Kind::Module) {
            std::string name = input.name;
            std::replace(name.begin(), name.end(), ' ', '_');
            if (module == name || module == input.name) {
                return {std::move(input)};
            }
            names.push_back(std::move(name));
        }
    }
    throw std::runtime_error("--module: no module \"" + Printable(module) +
                             "\" has a memory that can be read; " +
                             (names.empty() ? "none has one" : "those that have one are " + Listed(names)));
}

}  // namespace zvcam
