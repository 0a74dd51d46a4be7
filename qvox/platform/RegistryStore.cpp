#include "qvox/platform/RegistryStore.h"

#include <chrono>
#include <thread>

#include <sqlite3.h>

#include <system_error>
#include <utility>

#include "qvox/platform/Registry.h"
#include "qvox/platform/WinError.h"

namespace qvox {
namespace {

// Key paths and value names compare without regard to ASCII case, as the registry's do.
constexpr const char* kSchema =
    "CREATE TABLE IF NOT EXISTS registry_keys("
    "  path TEXT NOT NULL COLLATE NOCASE PRIMARY KEY) WITHOUT ROWID;"
    "CREATE TABLE IF NOT EXISTS registry_values("
    "  path TEXT NOT NULL COLLATE NOCASE,"
    "  name TEXT NOT NULL COLLATE NOCASE,"
    "  type INTEGER NOT NULL,"
    "  data BLOB NOT NULL,"
    "  PRIMARY KEY(path, name)) WITHOUT ROWID;";

LONG FromSqlite(int code, LONG otherwise) {
    switch (code & 0xFF) {
        case SQLITE_OK:
        case SQLITE_ROW:
        case SQLITE_DONE:
            return static_cast<LONG>(ERROR_SUCCESS);
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return ERROR_LOCK_VIOLATION;
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
            return ERROR_REGISTRY_CORRUPT;
        default:
            return otherwise;
    }
}

// One prepared statement, finalised when it goes.
class Statement {
  public:
    Statement(sqlite3* db, const char* sql) {
        m_code = sqlite3_prepare_v2(db, sql, -1, &m_stmt, nullptr);
    }
    ~Statement() { sqlite3_finalize(m_stmt); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    bool Ok() const { return m_code == SQLITE_OK; }
    int Code() const { return m_code; }
    void Text(int index, std::string_view text) {
        if (Ok()) {
            m_code = sqlite3_bind_text(m_stmt, index, text.data(), static_cast<int>(text.size()),
                                       SQLITE_TRANSIENT);
        }
    }
    void Int(int index, sqlite3_int64 value) {
        if (Ok()) m_code = sqlite3_bind_int64(m_stmt, index, value);
    }
    void Blob(int index, const BYTE* data, DWORD size) {
        if (!Ok()) return;
        // A null pointer would bind NULL, not an empty value.
        m_code = size == 0 ? sqlite3_bind_zeroblob(m_stmt, index, 0)
                           : sqlite3_bind_blob64(m_stmt, index, data, size, SQLITE_TRANSIENT);
    }
    // SQLITE_ROW, SQLITE_DONE or an error.
    int Step() { return Ok() ? sqlite3_step(m_stmt) : m_code; }
    sqlite3_stmt* Get() const { return m_stmt; }

  private:
    sqlite3_stmt* m_stmt = nullptr;
    int m_code = SQLITE_OK;
};

int Exec(sqlite3* db, const char* sql) {
    return sqlite3_exec(db, sql, nullptr, nullptr, nullptr);
}

// As Exec, for the statements that set a file up. While several processes open a new file at
// once, switching it to the write-ahead log can answer "busy" at once, without the busy handler
// waiting: such a statement is tried again until the busy timeout has passed.
int ExecWhileBusy(sqlite3* db, const char* sql, int timeoutMs) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    for (;;) {
        const int code = Exec(db, sql);
        const int primary = code & 0xFF;
        if ((primary != SQLITE_BUSY && primary != SQLITE_LOCKED) ||
            std::chrono::steady_clock::now() >= until) {
            return code;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

}  // namespace

SqliteRegistryStore::SqliteRegistryStore(std::filesystem::path path, int busyTimeoutMs)
    : m_path(std::move(path)), m_busyTimeoutMs(busyTimeoutMs) {}

SqliteRegistryStore::SqliteRegistryStore(InMemoryTag) : m_busyTimeoutMs(0) {}

std::shared_ptr<SqliteRegistryStore> SqliteRegistryStore::InMemory() {
    return std::shared_ptr<SqliteRegistryStore>(new SqliteRegistryStore(InMemoryTag{}));
}

SqliteRegistryStore::~SqliteRegistryStore() {
    sqlite3_close_v2(m_db);
}

LONG SqliteRegistryStore::EnsureOpen() {
    if (m_db != nullptr) return static_cast<LONG>(ERROR_SUCCESS);
    if (m_foreign) return ERROR_REGISTRY_CORRUPT;
    const bool inMemory = m_path.empty();
    if (!inMemory) {
        std::error_code ignored;
        std::filesystem::create_directories(m_path.parent_path(), ignored);
    }
    sqlite3* db = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX |
                      (inMemory ? SQLITE_OPEN_MEMORY : 0);
    int code = sqlite3_open_v2(inMemory ? ":memory:" : m_path.c_str(), &db, flags, nullptr);
    if (code == SQLITE_OK) code = sqlite3_busy_timeout(db, m_busyTimeoutMs);
    // The first statements read the file's header: a file that is not a database stops here,
    // before anything is written to it.
    if (code == SQLITE_OK && !inMemory) {
        code = ExecWhileBusy(db, "PRAGMA journal_mode=WAL", m_busyTimeoutMs);
    }
    if (code == SQLITE_OK && !inMemory) code = Exec(db, "PRAGMA synchronous=NORMAL");
    if (code == SQLITE_OK) code = ExecWhileBusy(db, kSchema, m_busyTimeoutMs);
    if (code != SQLITE_OK) {
        sqlite3_close_v2(db);
        if ((code & 0xFF) == SQLITE_NOTADB) m_foreign = true;
        return FromSqlite(code, ERROR_CANTREAD);
    }
    m_db = db;
    return static_cast<LONG>(ERROR_SUCCESS);
}

LONG SqliteRegistryStore::KeyExists(std::string_view path) {
    if (path.empty()) return static_cast<LONG>(ERROR_SUCCESS);
    Statement query(m_db, "SELECT 1 FROM registry_keys WHERE path = ?1");
    query.Text(1, path);
    const int code = query.Step();
    if (code == SQLITE_ROW) return static_cast<LONG>(ERROR_SUCCESS);
    if (code == SQLITE_DONE) return ERROR_FILE_NOT_FOUND;
    return FromSqlite(code, ERROR_CANTREAD);
}

LONG SqliteRegistryStore::OpenKey(std::string_view path) {
    std::lock_guard<std::mutex> lock(m_mutex);
    const LONG open = EnsureOpen();
    return open != static_cast<LONG>(ERROR_SUCCESS) ? open : KeyExists(path);
}

LONG SqliteRegistryStore::CreateKey(std::string_view path, bool& created) {
    std::lock_guard<std::mutex> lock(m_mutex);
    created = false;
    const LONG open = EnsureOpen();
    if (open != static_cast<LONG>(ERROR_SUCCESS)) return open;
    if (path.empty()) return static_cast<LONG>(ERROR_SUCCESS);
    // The write lock up front: a transaction that starts reading and then writes could not wait
    // for another writer, only fail.
    int code = Exec(m_db, "BEGIN IMMEDIATE");
    if (code != SQLITE_OK) return FromSqlite(code, ERROR_CANTWRITE);
    bool newKey = false;
    // Every key on the way down, the key itself last.
    for (std::size_t from = 0;;) {
        const std::size_t end = path.find('\\', from);
        Statement insert(m_db, "INSERT OR IGNORE INTO registry_keys(path) VALUES (?1)");
        insert.Text(1, path.substr(0, end));
        code = insert.Step();
        if (code != SQLITE_DONE) break;
        code = SQLITE_OK;
        newKey = sqlite3_changes(m_db) > 0;
        if (end == std::string_view::npos) break;
        from = end + 1;
    }
    if (code == SQLITE_OK) code = Exec(m_db, "COMMIT");
    if (code != SQLITE_OK) {
        Exec(m_db, "ROLLBACK");
        return FromSqlite(code, ERROR_CANTWRITE);
    }
    created = newKey;
    return static_cast<LONG>(ERROR_SUCCESS);
}

LONG SqliteRegistryStore::QueryValue(std::string_view path, std::string_view name,
                                     RegistryValue& value) {
    std::lock_guard<std::mutex> lock(m_mutex);
    const LONG open = EnsureOpen();
    if (open != static_cast<LONG>(ERROR_SUCCESS)) return open;
    Statement query(m_db, "SELECT type, data FROM registry_values WHERE path = ?1 AND name = ?2");
    query.Text(1, path);
    query.Text(2, name);
    const int code = query.Step();
    if (code == SQLITE_DONE) return ERROR_FILE_NOT_FOUND;
    if (code != SQLITE_ROW) return FromSqlite(code, ERROR_CANTREAD);
    value.type = static_cast<DWORD>(sqlite3_column_int64(query.Get(), 0));
    const auto* bytes = static_cast<const BYTE*>(sqlite3_column_blob(query.Get(), 1));
    const int size = sqlite3_column_bytes(query.Get(), 1);
    value.data.assign(bytes, bytes == nullptr ? bytes : bytes + size);
    return static_cast<LONG>(ERROR_SUCCESS);
}

LONG SqliteRegistryStore::SetValue(std::string_view path, std::string_view name, DWORD type,
                                   const BYTE* data, DWORD size) {
    std::lock_guard<std::mutex> lock(m_mutex);
    const LONG open = EnsureOpen();
    if (open != static_cast<LONG>(ERROR_SUCCESS)) return open;
    // One statement, so that the key's existence and the write are one step for other
    // processes too.
    Statement upsert(m_db,
                     "INSERT INTO registry_values(path, name, type, data)"
                     "  SELECT ?1, ?2, ?3, ?4"
                     "  WHERE ?1 = '' OR EXISTS (SELECT 1 FROM registry_keys WHERE path = ?1)"
                     "  ON CONFLICT(path, name) DO UPDATE SET type = excluded.type,"
                     "  data = excluded.data");
    upsert.Text(1, path);
    upsert.Text(2, name);
    upsert.Int(3, type);
    upsert.Blob(4, data, size);
    const int code = upsert.Step();
    if (code != SQLITE_DONE) return FromSqlite(code, ERROR_CANTWRITE);
    return sqlite3_changes(m_db) > 0 ? static_cast<LONG>(ERROR_SUCCESS) : ERROR_FILE_NOT_FOUND;
}

}  // namespace qvox
