#include "zvcam/fleet/Database.h"

#include <array>
#include <fstream>
#include <sqlite3.h>
#include <system_error>
#include <utility>

namespace zvcam {

namespace {

/// How long one program waits for another that writes.
constexpr int kPatienceMs = 10'000;

/// Where a database in WAL mode has what was written last.
std::filesystem::path LogOf(std::filesystem::path path) {
    path += "-wal";
    return path;
}

/// Whether a database is in WAL mode and nothing of it lies beside it: nobody writes to it.
bool IsWholeInWalMode(const std::filesystem::path& path) {
    // Where the header has the versions that a writer and a reader need; 2 is that of WAL mode.
    constexpr std::streamoff kVersions = 18;
    std::array<char, 2> versions{};
    std::ifstream file(path, std::ios::binary);
    file.seekg(kVersions).read(versions.data(), versions.size());
    std::error_code error;
    return versions == std::array<char, 2>{2, 2} && !std::filesystem::exists(LogOf(path), error);
}

}  // namespace

ReadOnlySource::ReadOnlySource(std::filesystem::path path) : mPath(std::move(path)) {
    std::error_code error;
    const std::filesystem::file_time_type written = std::filesystem::last_write_time(mPath, error);
    if (!error && IsWholeInWalMode(mPath)) {
        mWritten = written;
    }
}

std::string ReadOnlySource::uri() const {
    std::string uri = "file://";
    for (const char character : std::filesystem::absolute(mPath).string()) {
        switch (character) {
            case '%':
                uri += "%25";
                break;
            case '?':
                uri += "%3F";
                break;
            case '#':
                uri += "%23";
                break;
            default:
                uri += character;
        }
    }
    // Else a reader would make files beside it, and leave them there.
    return uri + "?mode=ro" + (mWritten ? "&immutable=1" : "");
}

void ReadOnlySource::checkUnwritten(const std::string& name) const {
    std::error_code error;
    if (mWritten && (std::filesystem::exists(LogOf(mPath), error) ||
                     std::filesystem::last_write_time(mPath, error) != *mWritten)) {
        throw DatabaseError(name + ": was written meanwhile; what was read of it may not fit together");
    }
}

void Database::Close::operator()(sqlite3* database) const {
    sqlite3_close(database);
}

Database::Database(const std::filesystem::path& path, Access access, std::string name)
    : mPath(path), mName(name.empty() ? path.string() : std::move(name)) {
    // An absolute path is no URI, and a name such as ":memory:" is a file's, too.
    std::string opened = std::filesystem::absolute(path).string();
    int flags = SQLITE_OPEN_URI | SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    if (access == Access::Read) {
        opened = mSource.emplace(path).uri();
        flags = SQLITE_OPEN_URI | SQLITE_OPEN_READONLY;
    }
    sqlite3* database = nullptr;
    const int result = sqlite3_open_v2(opened.c_str(), &database, flags, nullptr);
    mDatabase.reset(database);
    if (result != SQLITE_OK) {
        fail();
    }
    sqlite3_busy_timeout(database, kPatienceMs);
}

void Database::checkUnwritten() const {
    if (mSource) {
        mSource->checkUnwritten(mName);
    }
}

void Database::run(const std::string& sql) {
    if (!attempt(sql)) {
        fail();
    }
}

bool Database::attempt(const std::string& sql) {
    return sqlite3_exec(mDatabase.get(), sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

void Database::fail() const {
    if (!mDatabase) {
        throw DatabaseError(mName + ": there is not enough memory");
    }
    if (sqlite3_errcode(mDatabase.get()) == SQLITE_NOTADB) {
        throw DatabaseError(mName + ": expected an SQLite database, got another file");
    }
    std::error_code error;
    const std::filesystem::path log = LogOf(mPath);
    const bool needsFolder =
        sqlite3_errcode(mDatabase.get()) == SQLITE_CANTOPEN && std::filesystem::exists(log, error);
    throw DatabaseError(
        mName + ": " + sqlite3_errmsg(mDatabase.get()) +
        (needsFolder ? "; what " + log.string() + " holds is read in a folder that can be written" : ""));
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

Statement::Statement(Database& database, const std::string& sql) : mDatabase(database) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database.mDatabase.get(), sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        database.fail();
    }
    mStatement.reset(statement);
}

void Statement::bind(std::nullptr_t) {
    check(sqlite3_bind_null(mStatement.get(), ++mBound));
}

void Statement::bind(std::int64_t number) {
    check(sqlite3_bind_int64(mStatement.get(), ++mBound, number));
}

void Statement::bind(std::string_view text) {
    check(sqlite3_bind_text64(mStatement.get(), ++mBound, text.data() == nullptr ? "" : text.data(),
                              text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void Statement::check(int result) const {
    if (result != SQLITE_OK) {
        mDatabase.fail();
    }
}

bool Statement::step() {
    switch (sqlite3_step(mStatement.get())) {
        case SQLITE_ROW:
            return true;
        case SQLITE_DONE:
            reset();
            return false;
        default:
            mDatabase.fail();
    }
}

void Statement::reset() {
    sqlite3_reset(mStatement.get());
    mBound = 0;
}

int Statement::columns() const {
    return sqlite3_column_count(mStatement.get());
}

std::string Statement::name(int column) const {
    return sqlite3_column_name(mStatement.get(), column);
}

bool Statement::isNull(int column) const {
    return sqlite3_column_type(mStatement.get(), column) == SQLITE_NULL;
}

std::int64_t Statement::number(int column) const {
    return sqlite3_column_int64(mStatement.get(), column);
}

std::string Statement::text(int column) const {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(mStatement.get(), column));
    return text == nullptr
               ? std::string()
               : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(mStatement.get(), column)));
}

std::int64_t NumberOf(Database& database, const std::string& query) {
    Statement statement(database, query);
    return statement.step() ? statement.number(0) : 0;
}

Transaction::Transaction(Database& database) : mDatabase(&database) {
    database.run("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    if (mDatabase != nullptr) {
        // After some errors SQLite has taken it back itself.
        mDatabase->attempt("ROLLBACK");
    }
}

void Transaction::commit() {
    mDatabase->run("COMMIT");
    mDatabase = nullptr;
}

}  // namespace zvcam
