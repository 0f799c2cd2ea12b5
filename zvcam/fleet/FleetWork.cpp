#include "zvcam/fleet/FleetWork.h"

#include <chrono>
#include <exception>
#include <new>
#include <system_error>
#include <utility>

#include "analysis/Boot.h"
#include "analysis/FleetRows.h"
#include "zvcam/fleet/FleetEntries.h"
#include "zvcam/fleet/RowBytes.h"

namespace zvcam {

FleetWork::FleetWork(std::filesystem::path folder, LikePhone like, Change change)
    : mFolder(std::move(folder)), mLike(std::move(like)), mChange(std::move(change)) {}

std::string FleetWork::operator()(const std::string& path, supervisor::Booter& booter) const {
    using Clock = std::chrono::steady_clock;
    std::error_code error;
    analysis::FleetEntry entry = {.path = path,
                                  .pulledFolder = std::filesystem::is_directory(mFolder / path, error),
                                  .microseconds = 0};
    analysis::Boot boot;
    try {
        boot.phone = ReadFleetPhone(mFolder / path, mLike);
    } catch (const std::bad_alloc&) {
        throw;  // this machine's fault
    } catch (const std::exception& unread) {
        return RowBytes({analysis::RowOfNotBooted(entry, analysis::NotBooted::Unread, unread.what())});
    }
    mChange(*boot.phone);
    const Clock::time_point start = Clock::now();
    boot.record = booter.boot(*boot.phone);
    entry.microseconds = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start).count();
    return RowBytes(analysis::RowsOf(entry, boot));
}

std::size_t BootEntries(const std::vector<std::string>& paths, supervisor::BootPool& pool,
                        FleetWriter& writer, const std::function<void()>& onRows) {
    std::size_t failed = 0;
    for (std::size_t next = 0; next < paths.size() || pool.pending() > 0;) {
        for (; next < paths.size() && pool.wantsJobs(); ++next) {
            pool.add(next, paths[next]);
        }
        const auto result = pool.next();
        if (!result) {
            break;
        }
        if (result->error.empty()) {
            writer.add(ReadRowBytes(result->text));
        } else {
            ++failed;
            writer.add({analysis::RowOfNotBooted({.path = paths[result->key]}, analysis::NotBooted::Failed,
                                                 result->error)});
        }
        onRows();
    }
    return failed;
}

}  // namespace zvcam
