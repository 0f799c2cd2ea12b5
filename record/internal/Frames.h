#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "record/BootRecord.h"
#include "record/Events.h"

/// Values as bytes: how they cross from one process of this machine to another.
namespace record {

template <typename Part, typename... Any>
concept OneOf = (std::is_same_v<std::remove_const_t<Part>, Any> || ...);

/// What a record or a part of one consists of. Each binding names all members of its structure, so that none
/// can be forgotten.
template <
    OneOf<LogLine, PropertyAsked, PropertySet, EepromRead, AutofocusRead, PathOpened, Asked, ProviderAsked,
          TagStored, Tag, ProviderMerge, HandOver, ChangedFile, PluginIdentity, Ended, FileCalls, BootRecord>
        Fielded>
auto Fields(Fielded& part) {
    using Part = std::remove_const_t<Fielded>;
    if constexpr (std::is_same_v<Part, LogLine>) {
        auto& [priority, tag, message] = part;
        return std::tie(priority, tag, message);
    } else if constexpr (std::is_same_v<Part, PropertyAsked>) {
        auto& [name, value] = part;
        return std::tie(name, value);
    } else if constexpr (std::is_same_v<Part, PropertySet>) {
        auto& [name, value, stored] = part;
        return std::tie(name, value, stored);
    } else if constexpr (std::is_same_v<Part, EepromRead>) {
        auto& [sensorId, deviceBit, offset, length, read] = part;
        return std::tie(sensorId, deviceBit, offset, length, read);
    } else if constexpr (std::is_same_v<Part, AutofocusRead>) {
        auto& [deviceBit, succeeded] = part;
        return std::tie(deviceBit, succeeded);
    } else if constexpr (std::is_same_v<Part, PathOpened>) {
        auto& [path] = part;
        return std::tie(path);
    } else if constexpr (std::is_same_v<Part, Asked>) {
        auto& [query, about, answer, text] = part;
        return std::tie(query, about, answer, text);
    } else if constexpr (std::is_same_v<Part, ProviderAsked>) {
        auto& [provider] = part;
        return std::tie(provider);
    } else if constexpr (std::is_same_v<Part, TagStored>) {
        auto& [tag, result, count] = part;
        return std::tie(tag, result, count);
    } else if constexpr (std::is_same_v<Part, Tag>) {
        auto& [tag, values] = part;
        return std::tie(tag, values);
    } else if constexpr (std::is_same_v<Part, ProviderMerge>) {
        auto& [provider, metadata] = part;
        return std::tie(provider, metadata);
    } else if constexpr (std::is_same_v<Part, HandOver>) {
        auto& [block] = part;
        return std::tie(block);
    } else if constexpr (std::is_same_v<Part, ChangedFile>) {
        auto& [path, mode, bytes] = part;
        return std::tie(path, mode, bytes);
    } else if constexpr (std::is_same_v<Part, PluginIdentity>) {
        auto& [path, buildId] = part;
        return std::tie(path, buildId);
    } else if constexpr (std::is_same_v<Part, Ended>) {
        auto& [how, what, signal, exitStatus, seconds, step] = part;
        return std::tie(how, what, signal, exitStatus, seconds, step);
    } else if constexpr (std::is_same_v<Part, FileCalls>) {
        auto& [opened, read, written] = part;
        return std::tie(opened, read, written);
    } else {
        auto& [phone, plugin, events, files, rewritten, foreignFiles, troubles, ended, description, fileCalls,
               ordered] = part;
        return std::tie(phone, plugin, events, files, rewritten, foreignFiles, troubles, ended, description,
                        fileCalls, ordered);
    }
}

template <typename>
constexpr bool kIsList = false;
template <typename Item>
constexpr bool kIsList<std::vector<Item>> = true;
template <>
inline constexpr bool kIsList<std::string> = true;

template <typename>
constexpr bool kIsOptional = false;
template <typename Value>
constexpr bool kIsOptional<std::optional<Value>> = true;

template <typename>
constexpr bool kIsArray = false;
template <typename Item, std::size_t Count>
constexpr bool kIsArray<std::array<Item, Count>> = true;

template <typename>
constexpr bool kIsPair = false;
template <typename First, typename Second>
constexpr bool kIsPair<std::pair<First, Second>> = true;

/// Maps and sets.
template <typename Value>
concept Sorted = requires {
    typename Value::key_type;
};

/// Numbers, truth values and names of queries.
template <typename Value>
constexpr bool kIsPlain = std::is_arithmetic_v<Value> || std::is_enum_v<Value>;

/// Appends values to bytes. A structure goes field by field, as `Fields` of its namespace lists them.
class FrameWriter {
  public:
    explicit FrameWriter(std::vector<std::uint8_t>& bytes) : mBytes(bytes) {}

    template <typename Value>
    void put(const Value& value) {
        if constexpr (kIsPlain<Value>) {
            copy(&value, sizeof value);
        } else if constexpr (kIsOptional<Value>) {
            put(value.has_value());
            if (value) {
                put(*value);
            }
        } else if constexpr (kIsList<Value> || Sorted<Value>) {
            put(static_cast<std::uint32_t>(value.size()));
            putItems<typename Value::value_type>(value);
        } else if constexpr (kIsArray<Value>) {
            putItems<typename Value::value_type>(value);
        } else if constexpr (kIsPair<Value>) {
            put(value.first);
            put(value.second);
        } else if constexpr (std::is_same_v<Value, TagValues>) {
            put(static_cast<std::uint8_t>(value.type()));
            put(static_cast<std::uint32_t>(value.count()));
            value.visit(
                [this](const auto items) { this->putItems<std::remove_cvref_t<decltype(items[0])>>(items); });
        } else if constexpr (std::is_same_v<Value, Event>) {
            put(static_cast<std::uint8_t>(value.index()));
            std::visit([this](const auto& of) { this->put(of); }, value);
        } else {
            std::apply([this](const auto&... fields) { (this->put(fields), ...); }, Fields(value));
        }
    }

  private:
    template <typename Item>
    void putItems(const auto& items) {
        if constexpr (kIsPlain<Item> && requires { items.data(); }) {
            const auto* const bytes = reinterpret_cast<const std::uint8_t*>(items.data());
            mBytes.insert(mBytes.end(), bytes, bytes + items.size() * sizeof(Item));
        } else {
            for (const Item& item : items) {
                put(item);
            }
        }
    }
    void copy(const void* data, std::size_t size) {
        const std::size_t at = mBytes.size();
        mBytes.resize(at + size);
        std::memcpy(&mBytes[at], data, size);
    }

    std::vector<std::uint8_t>& mBytes;
};

/// Takes from bytes what a `FrameWriter` has put there. They may be anyone's: what is read is bounded by
/// their number. Each step answers whether the bytes held what it wanted.
class FrameReader {
  public:
    explicit FrameReader(std::span<const std::uint8_t> bytes) : mBytes(bytes) {}

    bool atEnd() const { return mBytes.empty(); }

    template <typename Value>
    bool get(Value& value) {
        if constexpr (std::is_same_v<Value, bool>) {
            return getBelow<std::uint8_t>(value, 2);
        } else if constexpr (std::is_same_v<Value, Query>) {
            return getBelow<std::uint8_t>(value, static_cast<std::uint8_t>(Query::CalibrationHelper) + 1);
        } else if constexpr (std::is_same_v<Value, Ended::How>) {
            return getBelow<unsigned>(value, static_cast<unsigned>(Ended::How::Timeout) + 1);
        } else if constexpr (kIsPlain<Value>) {
            return copy(&value, sizeof value);
        } else if constexpr (std::is_same_v<Value, Event>) {
            std::uint8_t kind = 0;
            return get(kind) && getAlternative(kind, value);
        } else if constexpr (kIsOptional<Value>) {
            bool there = false;
            return get(there) && (!there || get(value.emplace()));
        } else if constexpr (kIsList<Value>) {
            return getItems(value);
        } else if constexpr (Sorted<Value>) {
            return getSorted(value);
        } else if constexpr (kIsArray<Value>) {
            return std::all_of(value.begin(), value.end(), [this](auto& item) { return this->get(item); });
        } else if constexpr (std::is_same_v<Value, TagValues>) {
            return getValues(value);
        } else {
            return std::apply([this](auto&... fields) { return (this->get(fields) && ...); }, Fields(value));
        }
    }

  private:
    template <typename Number, typename Value>
    bool getBelow(Value& value, Number bound) {
        static_assert(sizeof(Number) == sizeof(Value));
        Number number = 0;
        if (!copy(&number, sizeof number) || number >= bound) {
            return false;
        }
        value = static_cast<Value>(number);
        return true;
    }

    /// The event of variant alternative `kind`.
    template <std::size_t Alternative = 0>
    bool getAlternative(std::size_t kind, Event& event) {
        if constexpr (Alternative < std::variant_size_v<Event>) {
            return kind == Alternative ? get(event.emplace<Alternative>())
                                       : getAlternative<Alternative + 1>(kind, event);
        }
        return false;
    }

    template <typename List>
    bool getItems(List& list) {
        using Item = typename List::value_type;
        // A list of lists has the length of each.
        constexpr std::size_t kLeast = kIsPlain<Item> ? sizeof(Item) : sizeof(std::uint32_t);
        std::uint32_t count = 0;
        if (!get(count) || count > mBytes.size() / kLeast) {
            return false;
        }
        if constexpr (sizeof(Item) == 1) {
            const auto* const items = reinterpret_cast<const Item*>(mBytes.data());
            list.assign(items, items + count);
            mBytes = mBytes.subspan(count);
            return true;
        } else if constexpr (kIsPlain<Item>) {
            list.resize(count);
            return copy(list.data(), count * sizeof(Item));
        } else {
            list.resize(count);
            for (Item& item : list) {
                if (!get(item)) {
                    return false;
                }
            }
            return true;
        }
    }

    /// Maps and sets, in their order.
    template <typename Container>
    bool getSorted(Container& container) {
        std::uint32_t count = 0;
        if (!get(count)) {
            return false;
        }
        for (; count > 0; --count) {
            typename Container::key_type key{};
            if (!get(key)) {
                return false;
            }
            if constexpr (requires { typename Container::mapped_type; }) {
                if (!get(container.try_emplace(container.end(), std::move(key))->second)) {
                    return false;
                }
            } else {
                container.insert(container.end(), std::move(key));
            }
        }
        return true;
    }

    template <typename Item>
    bool getValuesOf(TagValues& values) {
        std::vector<Item> items;
        if (!getItems(items) || items.empty()) {
            return false;
        }
        values = TagValues(std::move(items));
        return true;
    }

    bool getValues(TagValues& values) {
        using tables::TagItemType;
        std::uint8_t type = 0;
        if (!get(type)) {
            return false;
        }
        switch (static_cast<TagItemType>(type)) {
            case TagItemType::None: {
                std::uint32_t count = 0;
                return get(count) && count == 0;
            }
            case TagItemType::Int32:
                return getValuesOf<std::int32_t>(values);
            case TagItemType::Int64:
                return getValuesOf<std::int64_t>(values);
            case TagItemType::Float:
                return getValuesOf<float>(values);
            case TagItemType::Byte:
                return getValuesOf<std::uint8_t>(values);
            case TagItemType::Memory:
                return getValuesOf<Blob>(values);
        }
        return false;
    }

    bool copy(void* to, std::size_t size) {
        if (size > mBytes.size()) {
            return false;
        }
        if (size > 0) {
            std::memcpy(to, mBytes.data(), size);
        }
        mBytes = mBytes.subspan(size);
        return true;
    }

    std::span<const std::uint8_t> mBytes;
};

/// What bytes hold from the first to the last.
template <typename Value>
std::optional<Value> ReadFrame(std::span<const std::uint8_t> bytes) {
    FrameReader reader(bytes);
    std::optional<Value> value(std::in_place);
    if (!reader.get(*value) || !reader.atEnd()) {
        value.reset();
    }
    return value;
}

}  // namespace record
