// The settings store behind the registry calls (Registry.h): keys by path, each with named
// values of a type and some bytes. SqliteRegistryStore keeps them in an SQLite database, either a
// file that several processes use at once or a private in-memory database for tests.
#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "qvox/platform/WinTypes.h"

struct sqlite3;

namespace qvox {

// A value as the store keeps it.
struct RegistryValue {
    DWORD type = 0;
    std::vector<BYTE> data;
};

// Paths come normalised: names joined by single backslashes, no backslash at either end, ""
// for the root. Results are registry codes (ERROR_SUCCESS, ERROR_FILE_NOT_FOUND, ...).
// Implementations are safe to call from several threads.
class IRegistryStore {
  public:
    virtual ~IRegistryStore() = default;
    // ERROR_SUCCESS if the key exists; the root always does.
    virtual LONG OpenKey(std::string_view path) = 0;
    // Makes the key and the keys above it exist; created says whether the key itself was new.
    virtual LONG CreateKey(std::string_view path, bool& created) = 0;
    virtual LONG QueryValue(std::string_view path, std::string_view name, RegistryValue& value) = 0;
    // Fails with ERROR_FILE_NOT_FOUND when the key does not exist (any more).
    virtual LONG SetValue(std::string_view path, std::string_view name, DWORD type,
                          const BYTE* data, DWORD size) = 0;
};

// The store in an SQLite database. A file is opened on first use, in write-ahead-log mode with
// a busy timeout, so that readers and writers in other processes wait for each other instead of
// failing; the directories above it are created when missing. A file that is not an SQLite
// database is never written: every call then fails with ERROR_REGISTRY_CORRUPT and the file stays
// as it was. A store that cannot be opened (a locked or unreadable file) tries again on the next
// call.
class SqliteRegistryStore final : public IRegistryStore {
  public:
    // The database file at path; busyTimeoutMs is how long a call waits for another process's
    // lock before it fails.
    explicit SqliteRegistryStore(std::filesystem::path path, int busyTimeoutMs = 5000);
    // A private in-memory database, empty at first.
    static std::shared_ptr<SqliteRegistryStore> InMemory();
    ~SqliteRegistryStore() override;
    SqliteRegistryStore(const SqliteRegistryStore&) = delete;
    SqliteRegistryStore& operator=(const SqliteRegistryStore&) = delete;

    LONG OpenKey(std::string_view path) override;
    LONG CreateKey(std::string_view path, bool& created) override;
    LONG QueryValue(std::string_view path, std::string_view name, RegistryValue& value) override;
    LONG SetValue(std::string_view path, std::string_view name, DWORD type, const BYTE* data,
                  DWORD size) override;

    const std::filesystem::path& Path() const { return m_path; }

  private:
    struct InMemoryTag {};
    explicit SqliteRegistryStore(InMemoryTag);
    // Opens the database and its tables if that has not happened; a registry code.
    LONG EnsureOpen();
    LONG KeyExists(std::string_view path);

    std::filesystem::path m_path;  // empty for the in-memory database
    int m_busyTimeoutMs;
    std::mutex m_mutex;
    sqlite3* m_db = nullptr;
    bool m_foreign = false;  // the file is not a database of ours: never touch it
};

}  // namespace qvox
