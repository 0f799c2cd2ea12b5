#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "analysis/FleetRows.h"
#include "zvcam/fleet/Database.h"

namespace zvcam {

/// What a run boots.
struct FleetOrigin {
    std::string source;   ///< the absolute path of the list or folder that the phones come from, or "-"
    std::string shard;    ///< "2/8", or empty
    std::string options;  ///< those that change phones: "--set 'a=b' --like '/phone.json'", or empty
    std::optional<std::string> plugin;  ///< its build id, empty where it has none; nothing: not known
};

/// What one run at a time has of a database; gone with the program, however that ends.
class WriterLock {
  public:
    /// @throws std::runtime_error where another run has it. A file that cannot be opened or locked is left to
    /// whoever writes to it.
    explicit WriterLock(const std::filesystem::path& path);
    ~WriterLock();
    WriterLock(const WriterLock&) = delete;
    WriterLock& operator=(const WriterLock&) = delete;

  private:
    int mFile;
};

/// Writes the rows of phones into a fleet's database (docs/fleet.md has its tables), many phones in one
/// transaction: a program that is killed loses the phones of the transaction at hand and nothing else.
class FleetWriter {
  public:
    /// @param resume opens what is there; else a database that exists is refused.
    /// @throws std::runtime_error for a database that exists, that another run writes, that is of another
    /// kind or holds phones of another source, otherwise changed, or of another build of the plug-in;
    /// DatabaseError
    FleetWriter(const std::filesystem::path& path, bool resume, const FleetOrigin& origin);

    /// Paths of the phones that the database holds. Those that this machine could not boot have gone from
    /// it, to be tried again.
    std::unordered_set<std::string> paths();

    /// @param rows of one phone, its own first.
    /// @throws DatabaseError
    void add(std::vector<analysis::FleetRow> rows);

    /// Writes what is still to write.
    /// @throws DatabaseError
    void finish();

    /// Phones that this writer wrote whose entry cannot be read.
    std::int64_t unread();
    /// Phones that this writer wrote whose boot did not return.
    std::int64_t notReturned();

  private:
    void write();

    // Closed last: with a descriptor of its file SQLite's own locks on it would go.
    WriterLock mLock;
    Database mDatabase;
    std::vector<Statement> mInserts;  ///< one for each of `FleetTables`
    std::vector<std::vector<analysis::FleetRow>> mBatch;
    std::chrono::steady_clock::time_point mBatchStart;
    std::int64_t mRun = 0;
    std::int64_t mLastPhone = 0;
};

/// Opens a fleet's database to read it.
/// @throws std::runtime_error for a file of another kind; DatabaseError
Database OpenFleet(const std::filesystem::path& path);

/// Joins databases.
/// @param path a new or empty file.
/// @param name what messages call it.
/// @return phones in it.
/// @throws std::runtime_error when two inputs have a phone of the same path; DatabaseError
std::int64_t MergeFleets(const std::filesystem::path& path, const std::string& name,
                         const std::vector<std::string>& inputs);

/// The names of the tables and views that `--csv` prints.
std::vector<std::string> FleetTableNames();

/// Hands over the names of the columns of a table or view, then each row, where nothing stands for NULL. In a
/// table the path of the phone takes the place of its number.
/// @throws DatabaseError
void ReadTable(Database& database, const std::string& name,
               const std::function<void(const std::vector<std::string>&)>& take);

}  // namespace zvcam
