#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "zvcam/fleet/Summary.h"
#include "zvcam/views/Text.h"

namespace zvcam {

/// What a run over a fleet did.
struct FleetRun {
    std::size_t entries = 0;
    std::size_t repeated = 0;     ///< entries of the list that stood there before
    std::size_t done = 0;         ///< that the database held already
    std::size_t unread = 0;       ///< that cannot be read; none of those done before, as in what follows
    std::size_t notReturned = 0;  ///< whose boot did not return
    std::size_t failed = 0;       ///< that this machine could not boot
    double seconds = 0;
};

/// "1000 phones in 1.6 s, 625 a second; 3 cannot be read. `zvcam fleet report FILE` tells what they share."
void PrintFleetRun(std::ostream& out, const std::string& database, const FleetRun& run);

/// The report on a fleet, the worst first.
void PrintFleet(std::ostream& out, const std::string& database, const FleetSummary& summary,
                const Style& style);

/// The same as a page.
void WriteFleetPage(std::ostream& out, const std::string& database, const FleetSummary& summary);

/// A row of a table, comma-separated. A text with a comma or a quote stands in quotes.
void PrintCsvRow(std::ostream& out, const std::vector<std::string>& cells);

}  // namespace zvcam
