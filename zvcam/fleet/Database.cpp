#include "zvcam/fleet/Database.h"

#include <sqlite3.h>

namespace zvcam {

namespace {

/// How long one program waits for another that writes.
constexpr int kPatienceMs = 10'000;

}  // namespace

void Database::Close::operator()(sqlite3* database) const {
    sqlite3_close(database);
}

Database::Database(const std::filesystem::path& path, Access access) : mName(path.string()) {
    sqlite3* database = nullptr;
    // URIs are for what is attached: an absolute path is none, and a name such as ":memory:" is a file's,
    // too.
    const int flags = SQLITE_OPEN_URI | (access == Access::Read ? SQLITE_OPEN_READONLY
                                                                : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    const int result = sqlite3_open_v2(std::filesystem::absolute(path).c_str(), &database, flags, nullptr);
    mDatabase.reset(database);
    if (result != SQLITE_OK) {
        fail();
    }
    sqlite3_busy_timeout(database, kPatienceMs);
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
    throw DatabaseError(mName + ": " +
                        (mDatabase ? sqlite3_errmsg(mDatabase.get()) : "there is not enough memory"));
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
