#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "zvcam/fleet/Maker.h"
#include "zvcam/fleet/Troubles.h"

namespace zvcam {

/// Writes a made fleet: a folder of phone files, a thousand in a folder, which share the memories of the
/// phone that all are like and say what is different.
///
///     phones.txt               the list, for `zvcam fleet run`
///     phones/000/000042.json   the phone files
///     common/                  memories, and files too long to stand in every phone file
///     troubled.csv             path, trouble and place of each phone that has one
///     made.csv                 how many phones have each trouble, and the query that counts them
///
/// Until `finish` has succeeded all of it disappears with this object.
class MadeFolder {
  public:
    /// @throws std::runtime_error for a folder that exists and is not empty, or cannot be made.
    MadeFolder(std::filesystem::path folder, const virtualphone::PhoneDescription& like);
    ~MadeFolder();
    MadeFolder(const MadeFolder&) = delete;
    MadeFolder& operator=(const MadeFolder&) = delete;

    /// @throws std::runtime_error for a file that cannot be written.
    void add(std::uint64_t number, const MadePhone& made);

    /// Writes what sums up the rest.
    /// @param rates whose troubles are counted.
    /// @return phones with each of them.
    std::vector<std::size_t> finish(const std::vector<TroubleRate>& rates);

  private:
    struct State;
    std::unique_ptr<State> mState;
};

}  // namespace zvcam
