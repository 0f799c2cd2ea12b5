#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace zvcam {

/// What SQLite refuses: "FILE: database disk image is malformed".
class DatabaseError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A database that is to be read, and nothing written beside it unless it is being written.
class ReadOnlySource {
  public:
    explicit ReadOnlySource(std::filesystem::path path);

    /// SQLite's name of it.
    std::string uri() const;

    /// To be asked when all is read: where SQLite was told that nobody writes, it takes no notice of who
    /// does.
    /// @param name for messages.
    /// @throws DatabaseError for one that has been written meanwhile.
    void checkUnwritten(const std::string& name) const;

  private:
    std::filesystem::path mPath;
    /// When it was written last; none for one at which SQLite itself looks for writers.
    std::optional<std::filesystem::file_time_type> mWritten;
};

/// An open SQLite database.
class Database {
  public:
    enum class Access {
        Read,   ///< of one that exists
        Write,  ///< makes it where it does not exist
    };

    /// @param name for messages; empty: the path.
    /// @throws DatabaseError
    Database(const std::filesystem::path& path, Access access, std::string name = "");

    /// Runs statements that return no rows.
    /// @throws DatabaseError
    void run(const std::string& sql);

    /// The same.
    /// @return false where SQLite refuses.
    bool attempt(const std::string& sql);

    /// To be asked of one that is read, when all is read.
    /// @throws DatabaseError for one that has been written meanwhile.
    void checkUnwritten() const;

    /// @throws DatabaseError with the last error.
    [[noreturn]] void fail() const;

  private:
    friend class Statement;
    struct Close {
        void operator()(sqlite3* database) const;
    };
    std::filesystem::path mPath;
    std::string mName;
    std::optional<ReadOnlySource> mSource;  ///< of one that is read
    std::unique_ptr<sqlite3, Close> mDatabase;
};

/// A prepared statement, to be run any number of times. The database outlives it.
///
///     Statement named(database, "SELECT path FROM phones WHERE name = ?");
///     named.bind("halcyrion");
///     while (named.step()) { Use(named.text(0)); }
class Statement {
  public:
    /// @throws DatabaseError
    Statement(Database& database, const std::string& sql);

    /// Binds the next parameter, the first one after each reset.
    /// @throws DatabaseError
    void bind(std::nullptr_t);
    void bind(std::int64_t number);
    /// @param text stays as it is until the reset.
    void bind(std::string_view text);

    /// @return whether there is a row; at the end the statement is reset.
    /// @throws DatabaseError
    bool step();
    void reset();

    int columns() const;
    std::string name(int column) const;
    bool isNull(int column) const;
    std::int64_t number(int column) const;
    std::string text(int column) const;

  private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    /// @throws DatabaseError unless binding succeeded.
    void check(int result) const;

    Database& mDatabase;
    std::unique_ptr<sqlite3_stmt, Finalize> mStatement;
    int mBound = 0;
};

/// The number that a query has as its first column of its first row; 0 without a row.
/// @throws DatabaseError
std::int64_t NumberOf(Database& database, const std::string& query);

/// Changes that are made as a whole or not at all.
class Transaction {
  public:
    explicit Transaction(Database& database);
    /// Takes back what is not committed.
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

  private:
    Database* mDatabase;  ///< null: committed
};

}  // namespace zvcam
