// The registry calls over the SQLite settings store: the call protocol, names without case,
// rights, bad paths, a foreign or locked file, and processes writing one store at once.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "qvox/platform/Platform.h"
#include "qvox/platform/Registry.h"
#include "qvox/platform/WinError.h"

namespace qvox {
namespace {

namespace fs = std::filesystem;

LONG SetText(HKEY key, const char* name, const char* text) {
    return RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                          static_cast<DWORD>(std::strlen(text) + 1));
}

LONG Create(HKEY parent, const char* path, REGSAM access, HKEY* key, DWORD* disposition = nullptr) {
    return RegCreateKeyExA(parent, path, 0, nullptr, 0, access, nullptr, key, disposition);
}

std::string GetText(HKEY key, const char* name) {
    char buffer[64] = {};
    DWORD size = sizeof(buffer);
    DWORD type = REG_NONE;
    if (RegQueryValueExA(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size) !=
        ERROR_SUCCESS) {
        return "<missing>";
    }
    return buffer;
}

class Registry : public ::testing::Test {
  protected:
    std::shared_ptr<SqliteRegistryStore> store_ = SqliteRegistryStore::InMemory();
    ScopedPlatformServices services_{{nullptr, nullptr, nullptr, nullptr, store_}};
};

TEST_F(Registry, ValuesRoundTripWithTheSizeProtocol) {
    HKEY key = nullptr;
    DWORD disposition = 0;
    ASSERT_EQ(
        Create(HKEY_CURRENT_USER, "Software\\Q\\Order Entry", KEY_ALL_ACCESS, &key, &disposition),
        ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
    EXPECT_EQ(SetText(key, "DefType", "Limit"), ERROR_SUCCESS);
    const DWORD number = 0x01020304;
    EXPECT_EQ(
        RegSetValueExA(key, "QtyType", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), 4),
        ERROR_SUCCESS);

    DWORD type = 0;
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "deftype", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_TRUE(type == REG_SZ && size == 6u);  // the terminator counts
    BYTE small[3] = {};
    size = sizeof(small);
    EXPECT_EQ(RegQueryValueExA(key, "DefType", nullptr, nullptr, small, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 6u);
    DWORD read = 0;
    size = sizeof(read);
    EXPECT_EQ(
        RegQueryValueExA(key, "QTYTYPE", nullptr, &type, reinterpret_cast<BYTE*>(&read), &size),
        ERROR_SUCCESS);
    EXPECT_TRUE(type == REG_DWORD && read == number);
    EXPECT_EQ(RegQueryValueExA(key, "Nothing", nullptr, &type, nullptr, &size),
              ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(RegCloseKey(key), ERROR_SUCCESS);

    // Paths without case, parents created on the way, and opened again as existing.
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "SOFTWARE\\q\\order entry\\", 0, KEY_READ, &key),
              ERROR_SUCCESS);
    EXPECT_EQ(GetText(key, "DefType"), "Limit");
    RegCloseKey(key);
    ASSERT_EQ(Create(HKEY_CURRENT_USER, "software\\Q", KEY_READ, &key, &disposition),
              ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
    RegCloseKey(key);
}

TEST_F(Registry, RightsPathsAndHandles) {
    HKEY key = nullptr;
    ASSERT_EQ(Create(HKEY_CURRENT_USER, "A", KEY_READ, &key), ERROR_SUCCESS);
    EXPECT_EQ(SetText(key, "V", "x"), ERROR_ACCESS_DENIED);
    HKEY sub = nullptr;
    EXPECT_EQ(Create(key, "B", KEY_READ, &sub), ERROR_ACCESS_DENIED);
    RegCloseKey(key);
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "A", 0, KEY_WRITE, &key), ERROR_SUCCESS);
    EXPECT_EQ(SetText(key, "V", "x"), ERROR_SUCCESS);
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "V", nullptr, nullptr, nullptr, &size), ERROR_ACCESS_DENIED);
    RegCloseKey(key);

    for (const char* bad : {"\\A", "A\\\\B"}) {
        EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, bad, 0, KEY_READ, &key), ERROR_BAD_PATHNAME);
        EXPECT_EQ(key, nullptr);
    }
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Missing", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegQueryValueExA(nullptr, "V", nullptr, nullptr, nullptr, nullptr),
              ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
}

class RegistryFile : public ::testing::Test {
  protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() /
               ("qvox-registry-" + std::to_string(::getpid()) + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir_);
        fs::create_directories(dir_);
    }
    void TearDown() override { fs::remove_all(dir_); }
    fs::path dir_;
};

TEST_F(RegistryFile, AForeignFileIsLeftAsItWas) {
    const fs::path file = dir_ / "settings.db";
    const std::string content = "these are somebody's notes, not a database\n";
    std::ofstream(file) << content;
    SqliteRegistryStore store(file);
    bool created = false;
    EXPECT_EQ(store.CreateKey("Software", created), ERROR_REGISTRY_CORRUPT);
    const BYTE byte = 1;
    EXPECT_EQ(store.SetValue("", "V", REG_BINARY, &byte, 1), ERROR_REGISTRY_CORRUPT);
    std::stringstream now;
    now << std::ifstream(file).rdbuf();
    EXPECT_EQ(now.str(), content);
    EXPECT_FALSE(fs::exists(dir_ / "settings.db-wal"));
}

TEST_F(RegistryFile, ADamagedFileFailsWithoutHarm) {
    const fs::path file = dir_ / "settings.db";
    {
        SqliteRegistryStore store(file);
        bool created = false;
        ASSERT_EQ(store.CreateKey("K", created), ERROR_SUCCESS);
        const BYTE byte = 1;
        ASSERT_EQ(store.SetValue("K", "V", REG_BINARY, &byte, 1), ERROR_SUCCESS);
    }
    // Scribble over every page but the header.
    const auto size = fs::file_size(file);
    {
        std::fstream bytes(file, std::ios::in | std::ios::out | std::ios::binary);
        bytes.seekp(100);
        bytes << std::string(size - 100, '\xFF');
    }
    SqliteRegistryStore store(file);
    RegistryValue value;
    EXPECT_NE(store.QueryValue("K", "V", value), ERROR_SUCCESS);
}

TEST_F(RegistryFile, ALockedFileFailsInTimeAndRecovers) {
    const fs::path file = dir_ / "settings.db";
    SqliteRegistryStore store(file, 50);
    bool created = false;
    ASSERT_EQ(store.CreateKey("K", created), ERROR_SUCCESS);

    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    const BYTE byte = 7;
    EXPECT_EQ(store.SetValue("K", "V", REG_BINARY, &byte, 1), ERROR_LOCK_VIOLATION);
    ASSERT_EQ(sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(other);
    EXPECT_EQ(store.SetValue("K", "V", REG_BINARY, &byte, 1), ERROR_SUCCESS);
}

// Several processes create the same key and write their own values at once, each through its
// own connection; every value must be there afterwards.
TEST_F(RegistryFile, ConcurrentProcessesLoseNothing) {
    const fs::path file = dir_ / "shared" / "settings.db";
    constexpr int kProcesses = 4;
    constexpr int kValues = 150;
    std::vector<pid_t> children;
    for (int p = 0; p < kProcesses; ++p) {
        const pid_t pid = ::fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            SqliteRegistryStore store(file);
            int failures = 0;
            for (int i = 0; i < kValues; ++i) {
                bool created = false;
                failures += store.CreateKey("Software\\Shared", created) != ERROR_SUCCESS;
                const std::string name = "p" + std::to_string(p) + "-" + std::to_string(i);
                const DWORD value = static_cast<DWORD>(p * 1000 + i);
                failures +=
                    store.SetValue("Software\\Shared", name, REG_DWORD,
                                   reinterpret_cast<const BYTE*>(&value), 4) != ERROR_SUCCESS;
            }
            ::_exit(failures == 0 ? 0 : 1);
        }
        children.push_back(pid);
    }
    for (const pid_t pid : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    SqliteRegistryStore store(file);
    for (int p = 0; p < kProcesses; ++p) {
        for (int i = 0; i < kValues; ++i) {
            RegistryValue value;
            const std::string name = "P" + std::to_string(p) + "-" + std::to_string(i);
            ASSERT_EQ(store.QueryValue("software\\shared", name, value), ERROR_SUCCESS) << name;
            DWORD number = 0;
            std::memcpy(&number, value.data.data(), 4);
            EXPECT_EQ(number, static_cast<DWORD>(p * 1000 + i));
        }
    }
}

}  // namespace
}  // namespace qvox
