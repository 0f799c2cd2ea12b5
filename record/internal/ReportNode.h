#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "record/TagValues.h"
#include "record/internal/ReportJson.h"

/// The values of a report with where they stand. Whatever is asked of one and does not hold raises a
/// ReportError that names its JSON pointer and what was expected.
namespace record {

/// A value of a report. Borrows the document and the value that it stands in.
class ReportNode {
  public:
    explicit ReportNode(const Json& value) : mValue(value) {}
    ReportNode(const Json& value, const ReportNode& above, std::string key)
        : mValue(value), mAbove(&above), mKey(std::move(key)) {}

    /// Raises the error that this value is not what it should be.
    [[noreturn]] void fail(const std::string& expected) const;
    [[noreturn]] void fail(const std::string& expected, const std::string& got) const;

    const Json& json() const { return mValue; }

    const std::string& text() const;
    bool flag() const;
    template <std::integral Number>
    Number number(std::int64_t least = std::numeric_limits<Number>::min(),
                  std::int64_t most = std::numeric_limits<Number>::max()) const {
        return static_cast<Number>(numberWithin(least, most));
    }
    /// A number as "0x91010021".
    std::uint32_t hexNumber() const;
    Blob bytes() const;
    /// One of `names`; its position.
    std::size_t choice(std::span<const char* const> names) const;

    /// Calls `read` with each element of a list.
    template <typename Read>
    void each(const Read& read) const {
        if (!mValue.is_array()) {
            fail("a list");
        }
        std::size_t index = 0;
        for (const Json& element : mValue) {
            read(ReportNode(element, *this, std::to_string(index++)));
        }
    }

  private:
    std::int64_t numberWithin(std::int64_t least, std::int64_t most) const;
    std::string pointer() const;

    const Json& mValue;
    const ReportNode* mAbove = nullptr;
    std::string mKey;
};

/// The members of an object that has these keys only, each once.
class ReportObject {
  public:
    ReportObject(const ReportNode& node, std::initializer_list<const char*> keys);

    /// Null where the object has no such member.
    const ReportNode* find(std::string_view key) const;
    const ReportNode& at(const char* key) const;

  private:
    const ReportNode& mNode;
    std::vector<std::pair<std::string, ReportNode>> mFound;
};

}  // namespace record
