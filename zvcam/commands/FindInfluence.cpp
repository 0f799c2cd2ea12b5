#include "zvcam/commands/FindInfluence.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "zvcam/commands/Progress.h"

namespace zvcam {

analysis::Influence FindInfluence(analysis::InfluenceSearch& search, supervisor::BootPool& pool) {
    Progress progress("bytes", search.bytes(), /*quiet=*/false);
    std::size_t shown = 0;
    const auto add = [&](std::vector<std::string> jobs) {
        for (std::string& job : jobs) {
            pool.add(0, std::move(job));
        }
    };
    const auto take = [&] {
        const std::optional<supervisor::PoolResult> result = pool.next();
        if (result && !result->error.empty()) {
            throw std::runtime_error("a boot could not be made: " + result->error);
        }
        if (result) {
            add(search.take(result->text));
        }
        const std::size_t settled = std::max(search.settledBytes(), shown);
        progress.advance(settled - std::exchange(shown, settled));
        return result.has_value();
    };
    add(search.begin());
    bool going = take();
    while (going) {
        // One input after the other, so that a search that is stopped knows all of the first ones.
        while (!search.allBegun() && pool.wantsJobs()) {
            add(search.beginInput());
        }
        if (pool.pending() == 0) {
            break;
        }
        going = take();
    }
    // What was done when a signal stopped the pool has come, and there is no more.
    return search.influence(/*complete=*/going && !pool.stopped());
}

}  // namespace zvcam
