#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "analysis/Boot.h"

/// A boot as rows of tables, so that a hundred thousand of them can be asked what they share.
namespace analysis {

/// A column of such a table.
struct FleetColumn {
    enum class Type { Number, Text };

    const char* name;
    Type type;
    const char* meaning;  ///< in Markdown
};

/// A table with any number of rows for each phone, in an order that means something.
struct FleetTable {
    const char* name;
    const char* meaning;  ///< in Markdown
    std::span<const FleetColumn> columns;
};

/// All of them. The first one has one row for each phone, with its path and how its boot ended.
std::span<const FleetTable> FleetTables();

/// What a row has in a column: nothing, a number or a text.
using FleetCell = std::variant<std::monostate, std::int64_t, std::string>;

/// A row, with one cell for each column.
struct FleetRow {
    std::size_t table = 0;  ///< position in `FleetTables`
    std::vector<FleetCell> cells;

    friend bool operator==(const FleetRow&, const FleetRow&) = default;
};

/// Where a phone of a fleet comes from.
struct FleetEntry {
    std::string path;               ///< as the fleet's list names it
    bool pulledFolder = false;      ///< else a phone file
    std::int64_t microseconds = 0;  ///< that the boot took; 0 without one
};

/// The rows of a boot, the phone's own first.
std::vector<FleetRow> RowsOf(const FleetEntry& entry, const Boot& boot);

/// Why a phone was not booted.
enum class NotBooted {
    Unread,  ///< nothing can be made of its file or folder
    Failed,  ///< this machine could not: no room, no memory
};

/// The one row of a phone that was not booted.
FleetRow RowOfNotBooted(const FleetEntry& entry, NotBooted why, std::string reason);

}  // namespace analysis
