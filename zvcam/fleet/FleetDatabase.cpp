#include "zvcam/fleet/FleetDatabase.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>
#include <variant>

namespace zvcam {

namespace {

namespace fs = std::filesystem;
using analysis::FleetCell;
using analysis::FleetColumn;
using analysis::FleetRow;
using analysis::FleetTable;

/// Tells a fleet's database from others, and this form of it from later ones.
constexpr int kApplicationId = 0x5A56434D;  // "ZVCM"
constexpr int kVersion = 2;

/// A transaction ends with so many phones, or after so long.
constexpr std::size_t kMostInBatch = 100;
constexpr std::chrono::seconds kLongestBatch(1);

/// Questions that every report asks, for people to ask too.
struct View {
    const char* name;
    const char* query;
};

constexpr std::array<View, 5> kViews = {{
    {"common_findings",
     "SELECT severity, about, kind, count(DISTINCT phone) AS phones FROM findings"
     " GROUP BY severity, about, kind ORDER BY severity, phones DESC, about, kind"},
    {"findings_by_module",
     "SELECT f.severity, f.about, f.kind, m.chip, m.maker, m.layout, count(DISTINCT f.phone) AS phones"
     " FROM findings f JOIN modules m ON m.phone = f.phone AND m.name = f.about"
     " GROUP BY f.severity, f.about, f.kind, m.chip, m.maker, m.layout"
     " ORDER BY f.severity, phones DESC, f.about, f.kind, m.chip, m.maker, m.layout"},
    {"module_kinds",
     "SELECT name, chip, maker, layout, count(*) AS modules,"
     " count(*) FILTER (WHERE reading = 'failed') AS unreadable,"
     " count(erased) AS erased, count(*) FILTER (WHERE fits = 0) AS of_other_module,"
     " count(*) FILTER (WHERE af = 'bad') AS af_bad, count(*) FILTER (WHERE awb = 'bad') AS awb_bad,"
     " count(*) FILTER (WHERE lsc = 'bad') AS lsc_bad, count(*) FILTER (WHERE pdaf = 'bad') AS pdaf_bad,"
     " count(*) FILTER (WHERE ois = 'bad') AS ois_bad"
     " FROM modules GROUP BY role, name, chip, maker, layout"
     " ORDER BY role, modules DESC, chip, maker, layout"},
    // An id of zeros, or of ones, is that of a sensor whose id was never burned.
    {"repeated_fuse_ids",
     "SELECT m.name, m.fuse_id, count(*) AS modules, min(p.path) AS first, max(p.path) AS last"
     " FROM modules m JOIN phones p ON p.id = m.phone"
     " WHERE trim(m.fuse_id, '0') <> '' AND trim(m.fuse_id, 'F') <> ''"
     " GROUP BY m.role, m.name, m.fuse_id HAVING count(*) > 1 ORDER BY modules DESC, m.role, m.fuse_id"},
    {"common_error_lines",
     "SELECT operation, text, sum(lines) AS lines, count(DISTINCT phone) AS phones FROM error_lines"
     " WHERE NOT usual GROUP BY operation, text ORDER BY phones DESC, lines DESC, operation, text"},
}};

bool IsOfPhones(const FleetTable& table) {
    return &table == analysis::FleetTables().data();
}

std::string ColumnNames(const FleetTable& table, std::string_view prefix = {}) {
    std::string names;
    for (const FleetColumn& column : table.columns) {
        names += (names.empty() ? "" : ", ") + std::string(prefix) + column.name;
    }
    return names;
}

/// What stands in front of a table's own columns.
std::string KeyNames(const FleetTable& table) {
    return IsOfPhones(table) ? "id, run" : "phone, n";
}

std::string CreationOf(const FleetTable& table) {
    std::string sql = "CREATE TABLE " + std::string(table.name) +
                      (IsOfPhones(table) ? " (id INTEGER PRIMARY KEY, run INTEGER NOT NULL REFERENCES runs"
                                         : " (phone INTEGER NOT NULL REFERENCES phones, n INTEGER NOT NULL");
    for (const FleetColumn& column : table.columns) {
        sql += ", " + std::string(column.name) +
               (column.type == FleetColumn::Type::Number ? " INTEGER" : " TEXT");
    }
    // Rows lie by phone, so that those of one phone stand together without an index.
    return sql + (IsOfPhones(table) ? ", UNIQUE (path));" : ", PRIMARY KEY (phone, n)) WITHOUT ROWID;");
}

std::string InsertionInto(const FleetTable& table) {
    std::string sql = "INSERT INTO " + std::string(table.name) + " VALUES (?, ?";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        sql += ", ?";
    }
    return sql + ")";
}

void CreateTables(Database& database) {
    Transaction transaction(database);
    database.run(
        "CREATE TABLE runs (id INTEGER PRIMARY KEY, source TEXT NOT NULL, shard TEXT NOT NULL,"
        " options TEXT NOT NULL);");
    for (const FleetTable& table : analysis::FleetTables()) {
        database.run(CreationOf(table));
    }
    for (const View& view : kViews) {
        database.run("CREATE VIEW " + std::string(view.name) + " AS " + view.query);
    }
    database.run("PRAGMA application_id = " + std::to_string(kApplicationId));
    database.run("PRAGMA user_version = " + std::to_string(kVersion));
    transaction.commit();
}

void CheckIsFleet(Database& database, const std::string& name) {
    const std::string expected = name + ": expected a database of `zvcam fleet run`";
    if (NumberOf(database, "PRAGMA application_id") != kApplicationId) {
        throw std::runtime_error(expected + ", got another one");
    }
    if (const std::int64_t version = NumberOf(database, "PRAGMA user_version"); version != kVersion) {
        throw std::runtime_error(expected + " with user_version " + std::to_string(kVersion) +
                                 ", got one of another zvcam with user_version " + std::to_string(version));
    }
}

/// Nobody has written to it yet, be it that a killed program just made it.
bool IsEmpty(Database& database) {
    return NumberOf(database, "SELECT count(*) FROM sqlite_schema") == 0;
}

/// Paths are relative to their source, so those of two sources would pass for each other. What becomes of
/// phones that were changed otherwise, or under another build of the plug-in, is not to be counted together.
void CheckHolds(Database& database, const std::string& name, const FleetOrigin& origin) {
    // Those that this machine could not boot go first.
    const std::string isKept = " AND id IN (SELECT run FROM phones WHERE ended <> 'failed') LIMIT 1";
    Statement source(database, "SELECT source FROM runs WHERE source <> ?" + isKept);
    source.bind(std::string_view(origin.source));
    if (source.step()) {
        throw std::runtime_error(name + ": cannot go on with phones of another source: it holds phones of " +
                                 source.text(0));
    }
    Statement options(database, "SELECT options FROM runs WHERE options <> ?" + isKept);
    options.bind(std::string_view(origin.options));
    if (options.step()) {
        const std::string kept = options.text(0);
        throw std::runtime_error(name + ": cannot go on with other options: it holds phones booted " +
                                 (kept.empty() ? "without --set and --like" : "with " + kept));
    }
    if (!origin.plugin) {
        return;
    }
    Statement plugin(database,
                     "SELECT ifnull(plugin, 'none') FROM phones WHERE (plugin IS NOT NULL OR"
                     " ended = 'returned') AND ifnull(plugin, '') <> ? LIMIT 1");
    plugin.bind(std::string_view(*origin.plugin));
    if (plugin.step()) {
        throw std::runtime_error(name + ": cannot go on with a plug-in of build id " +
                                 (origin.plugin->empty() ? "none" : *origin.plugin) +
                                 ": it holds phones of build id " + plugin.text(0));
    }
}

const fs::path& CheckMayWrite(const fs::path& path, bool resume) {
    std::error_code error;
    if (!resume && fs::exists(fs::symlink_status(path, error))) {
        throw std::runtime_error("cannot write " + path.string() +
                                 ": it exists; --resume goes on with a database of `zvcam fleet run`");
    }
    return path;
}

Database OpenToWrite(const fs::path& path, const FleetOrigin& origin) {
    Database database(path, Database::Access::Write);
    const bool empty = IsEmpty(database);
    if (!empty) {
        // Before its journal's mode changes, which stays with the file.
        CheckIsFleet(database, path.string());
        CheckHolds(database, path.string(), origin);
    }
    // A commit is safe from the end of this program; from that of the machine once it reached the database.
    database.run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
    if (empty) {
        CreateTables(database);
    }
    return database;
}

void Bind(Statement& statement, const FleetCell& cell) {
    if (const auto* const number = std::get_if<std::int64_t>(&cell)) {
        statement.bind(*number);
    } else if (const auto* const text = std::get_if<std::string>(&cell)) {
        statement.bind(std::string_view(*text));
    } else {
        statement.bind(nullptr);
    }
}

void CheckIsDisjoint(Database& database, const std::string& input) {
    Statement both(database,
                   "SELECT path FROM input.phones WHERE path IN (SELECT path FROM main.phones) LIMIT 1");
    if (both.step()) {
        throw std::runtime_error(input + ": an earlier database has the phone " + both.text(0) + " too");
    }
}

/// Copies what `input` holds, its phones numbered behind those that are there.
void CopyFrom(Database& database) {
    const std::string lastRun =
        std::to_string(NumberOf(database, "SELECT ifnull(max(id), 0) FROM main.runs"));
    const std::string lastPhone =
        std::to_string(NumberOf(database, "SELECT ifnull(max(id), 0) FROM main.phones"));
    database.run("INSERT INTO main.runs SELECT id + " + lastRun + ", source, shard, options FROM input.runs");
    const std::string keysOfPhones = "id + " + lastPhone + ", run + " + lastRun;
    const std::string keysOfOthers = "phone + " + lastPhone + ", n";
    for (const FleetTable& table : analysis::FleetTables()) {
        const std::string& keys = IsOfPhones(table) ? keysOfPhones : keysOfOthers;
        const std::string columns = ColumnNames(table);
        std::ostringstream insert;
        insert << "INSERT INTO main." << table.name << " (" << KeyNames(table) << ", " << columns
               << ") SELECT " << keys << ", " << columns << " FROM input." << table.name;
        database.run(insert.str());
    }
}

/// Refuses, in the name of the database itself, one that lacks what is to be copied.
void CheckIsComplete(Database& database) {
    const auto prepare = [&](const std::string& query) { static_cast<void>(Statement(database, query)); };
    prepare("SELECT id, source, shard, options FROM runs");
    for (const FleetTable& table : analysis::FleetTables()) {
        prepare("SELECT " + KeyNames(table) + ", " + ColumnNames(table) + " FROM " + table.name);
    }
}

/// A query for a table with the path of the phone in place of its number, or for a view.
std::string QueryOfTable(const std::string& name) {
    for (const FleetTable& table : analysis::FleetTables()) {
        if (name == table.name) {
            return IsOfPhones(table)
                       ? "SELECT " + ColumnNames(table) + " FROM phones ORDER BY path"
                       // By the index of the paths, row for row: nothing has to be sorted.
                       : "SELECT p.path, t.n, " + ColumnNames(table, "t.") + " FROM phones p CROSS JOIN " +
                             name + " t ON t.phone = p.id ORDER BY p.path, t.n";
        }
    }
    return "SELECT * FROM " + name;
}

void Join(Database& database, const std::string& input) {
    const ReadOnlySource source(input);
    {
        Statement attach(database, "ATTACH ? AS input");
        const std::string uri = source.uri();
        attach.bind(std::string_view(uri));
        attach.step();
    }
    {
        Transaction transaction(database);
        CheckIsDisjoint(database, input);
        CopyFrom(database);
        source.checkUnwritten(input);
        transaction.commit();
    }
    database.run("DETACH input");
}

}  // namespace

WriterLock::WriterLock(const fs::path& path)
    : mFile(open(path.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0644)) {
    if (mFile >= 0 && flock(mFile, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        close(mFile);
        throw std::runtime_error(path.string() + ": another run is writing it");
    }
}

WriterLock::~WriterLock() {
    if (mFile >= 0) {
        close(mFile);
    }
}

FleetWriter::FleetWriter(const fs::path& path, bool resume, const FleetOrigin& origin)
    : mLock(CheckMayWrite(path, resume)), mDatabase(OpenToWrite(path, origin)) {
    for (const FleetTable& table : analysis::FleetTables()) {
        mInserts.emplace_back(mDatabase, InsertionInto(table));
    }
    Transaction transaction(mDatabase);
    mDatabase.run("DELETE FROM phones WHERE ended = 'failed'");
    Statement run(mDatabase, "INSERT INTO runs (source, shard, options) VALUES (?, ?, ?)");
    run.bind(std::string_view(origin.source));
    run.bind(std::string_view(origin.shard));
    run.bind(std::string_view(origin.options));
    run.step();
    mRun = NumberOf(mDatabase, "SELECT max(id) FROM runs");
    mLastPhone = NumberOf(mDatabase, "SELECT ifnull(max(id), 0) FROM phones");
    transaction.commit();
}

std::unordered_set<std::string> FleetWriter::paths() {
    std::unordered_set<std::string> paths;
    Statement statement(mDatabase, "SELECT path FROM phones");
    while (statement.step()) {
        paths.insert(statement.text(0));
    }
    return paths;
}

void FleetWriter::add(std::vector<FleetRow> rows) {
    const auto now = std::chrono::steady_clock::now();
    mBatchStart = mBatch.empty() ? now : mBatchStart;
    mBatch.push_back(std::move(rows));
    if (mBatch.size() >= kMostInBatch || now - mBatchStart >= kLongestBatch) {
        write();
    }
}

void FleetWriter::write() {
    Transaction transaction(mDatabase);
    for (const std::vector<FleetRow>& rows : mBatch) {
        ++mLastPhone;
        std::vector<std::int64_t> counts(mInserts.size(), 0);
        for (const FleetRow& row : rows) {
            Statement& insert = mInserts[row.table];
            const std::int64_t n = ++counts[row.table];
            insert.bind(mLastPhone);
            insert.bind(row.table == 0 ? mRun : n);
            for (const FleetCell& cell : row.cells) {
                Bind(insert, cell);
            }
            insert.step();
        }
    }
    transaction.commit();
    mBatch.clear();
}

void FleetWriter::finish() {
    write();
    // One file is left, which can be copied as it is, and read where nothing can be written; unless somebody
    // is reading now.
    mDatabase.attempt("PRAGMA journal_mode = DELETE");
}

std::int64_t FleetWriter::unread() {
    return NumberOf(mDatabase,
                    "SELECT count(*) FROM phones WHERE ended = 'unread' AND run = " + std::to_string(mRun));
}

std::int64_t FleetWriter::notReturned() {
    return NumberOf(mDatabase,
                    "SELECT count(*) FROM phones WHERE ended NOT IN ('returned', 'unread', 'failed')"
                    " AND run = " +
                        std::to_string(mRun));
}

Database OpenFleet(const fs::path& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
        throw std::runtime_error(path.string() + ": expected a database of `zvcam fleet run`, got " +
                                 (error ? error.message() : "what is no file"));
    }
    Database database(path, Database::Access::Read);
    CheckIsFleet(database, path.string());
    return database;
}

std::int64_t MergeFleets(const fs::path& path, const std::string& name,
                         const std::vector<std::string>& inputs) {
    for (const std::string& input : inputs) {
        Database opened = OpenFleet(input);
        CheckIsComplete(opened);
    }
    Database database(path, Database::Access::Write, name);
    // Whoever reads it does so when it is complete.
    database.run("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF");
    CreateTables(database);
    for (const std::string& input : inputs) {
        Join(database, input);
    }
    return NumberOf(database, "SELECT count(*) FROM phones");
}

std::vector<std::string> FleetTableNames() {
    std::vector<std::string> names;
    for (const FleetTable& table : analysis::FleetTables()) {
        names.emplace_back(table.name);
    }
    names.emplace_back("runs");
    for (const View& view : kViews) {
        names.emplace_back(view.name);
    }
    return names;
}

void ReadTable(Database& database, const std::string& name,
               const std::function<void(const std::vector<std::string>&)>& take) {
    Statement statement(database, QueryOfTable(name));
    std::vector<std::string> cells;
    cells.reserve(static_cast<std::size_t>(statement.columns()));
    for (int column = 0; column < statement.columns(); ++column) {
        cells.push_back(statement.name(column));
    }
    take(cells);
    while (statement.step()) {
        for (int column = 0; column < statement.columns(); ++column) {
            cells[static_cast<std::size_t>(column)] = statement.text(column);
        }
        take(cells);
    }
}

}  // namespace zvcam
