#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "supervisor/BootPool.h"
#include "supervisor/Booter.h"
#include "virtualphone/PhoneDescription.h"
#include "zvcam/files/PhoneFolder.h"
#include "zvcam/fleet/FleetDatabase.h"

namespace zvcam {

/// Boots one phone in a worker and makes rows of it.
class FleetWork {
  public:
    using Change = std::function<void(virtualphone::PhoneDescription&)>;

    /// @param folder where relative paths start.
    /// @param like what pulled folders take their sensors and devices from.
    /// @param change made to each phone before its boot.
    FleetWork(std::filesystem::path folder, LikePhone like, Change change);

    /// @param path of a phone file or a pulled folder.
    /// @return the rows, as `ReadRowBytes` reads them.
    /// @throws what `Booter::boot` throws.
    std::string operator()(const std::string& path, supervisor::Booter& booter) const;

  private:
    std::filesystem::path mFolder;
    LikePhone mLike;
    Change mChange;
};

/// Has a pool with that work boot phones, and keeps their rows.
/// @param onRows called behind each phone.
/// @return how many phones this machine could not boot.
/// @throws DatabaseError when rows cannot be written.
std::size_t BootEntries(const std::vector<std::string>& paths, supervisor::BootPool& pool,
                        FleetWriter& writer, const std::function<void()>& onRows);

}  // namespace zvcam
