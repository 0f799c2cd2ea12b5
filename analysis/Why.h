#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "analysis/Boot.h"
#include "analysis/Devices.h"
#include "tables/PublishingOperations.h"

namespace analysis {

/// Something that the plug-in publishes, or would.
struct Item {
    enum class Kind { Property, File, Tag };
    Kind kind = Kind::Property;
    std::string name;       ///< of the property or tag, or the path
    std::uint32_t tag = 0;  ///< of a tag
    tables::PublishingOperation operation{};
    std::string about;  ///< what it says
};

/// The items that a person's text names: in full, or by a part that ends a name, in any case. Tags by number
/// too.
std::vector<Item> ItemsNamed(std::string_view text);

/// The items whose names look most like a text that names none.
std::vector<std::string> NamesLike(std::string_view text);

/// Of `names`, those that fewest edits part from a text, the nearest first.
std::vector<std::string> NearestOf(std::vector<std::string> names, std::string_view text, std::size_t count);

/// Those of `names` that a text may be a slip of the hand for, or for the end of which behind a "_"; the
/// nearest first, at most three.
std::vector<std::string> NamesNear(std::vector<std::string> names, std::string_view text);

/// What the plug-in asked the platform for, and how often.
struct Question {
    std::string words;
    std::size_t times = 1;
};

/// A line of the log; lines that differ in numbers alone stand for each other.
struct LineGroup {
    const record::LogLine* line = nullptr;
    std::size_t alike = 0;  ///< further lines of the same kind behind it
};

/// Where an item comes from, or where the operation gave up that would have published it.
struct Reason {
    Item item;
    /// The device that was asked about, for tags.
    std::optional<Device> device;
    const record::PropertySet* property = nullptr;  ///< set last
    const record::ChangedFile* file = nullptr;
    bool fileRewritten = false;  ///< it was the same before the boot
    bool fileLaid = false;       ///< the phone started with it, and nobody wrote it
    const record::Tag* tag = nullptr;
    std::optional<int> refused;  ///< error code of the update
    std::string noDevices;       ///< of a tag: why no device was updated at all
    std::string
        noFuseId;  ///< of a fuse id that was not published: what its module lacks; empty where unknown
    bool stepRan = false;
    bool endedInIt = false;                   ///< the boot ended before the step could publish it
    bool appliesToRole = true;                ///< devices of this role get the tag on some phone
    const record::LogLine* gaveUp = nullptr;  ///< the error with which the step ended
    std::vector<LineGroup> lines;             ///< of the operation's step, chatter of shared helpers left out
    std::size_t helperLines = 0;              ///< those left out
    std::vector<Question> questions;          ///< in the order in which they were asked first

    bool published() const {
        return (property != nullptr && property->stored) || file != nullptr || tag != nullptr;
    }
};

/// @param device position in `devices`; used for tags only, and where there are devices.
Reason WhyOf(const Boot& boot, const Course& course, const std::vector<Device>& devices, const Item& item,
             std::size_t device);

}  // namespace analysis
