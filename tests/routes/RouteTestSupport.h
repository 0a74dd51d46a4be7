// What the route tests share: a platform root directory of their own with its Program folder,
// an in-memory settings store, and the bytes of a cache file.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "qvox/platform/Bstr.h"
#include "qvox/platform/ComObject.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/platform/Registry.h"

namespace qvox::testing {

namespace fs = std::filesystem;

// The bytes of a cache file, written out by hand.
class Bytes {
  public:
    Bytes& U32(std::uint32_t value) {
        for (int i = 0; i < 4; ++i)
            data_.push_back(static_cast<char>(value >> (8 * i)));
        return *this;
    }
    // A narrow string with a one-byte length.
    Bytes& Str(const std::string& text) {
        data_.push_back(static_cast<char>(text.size()));
        data_ += text;
        return *this;
    }
    Bytes& Raw(const std::string& bytes) {
        data_ += bytes;
        return *this;
    }
    const std::string& str() const { return data_; }

  private:
    std::string data_;
};

// The platform's root object and its route lists, counting the requests per category. Set it up
// before it serves: only the counters and the failure change while threads use it.
class FakeRouteServer final : public ComObject<IMVRoot, IMVRouteList> {
  public:
    HRESULT GetServices(IUnknown** services) override {
        // Some other object when it should lack the route-list interface.
        *services = withoutRouteList ? static_cast<IUnknown*>(CMVCollection::Create().Detach())
                                     : AsUnknown();
        if (!withoutRouteList) AddRef();
        return S_OK;
    }
    HRESULT GetRouteList(LONG category, BSTR* list) override {
        const int call = ++calls.at(static_cast<std::size_t>(category));
        if (const HRESULT hr = failure; FAILED(hr)) return hr;
        const auto text = texts.find(category);
        const bool answers = call > emptyAnswers && text != texts.end();
        *list = SysAllocStringFromCp1252(answers ? std::string_view(text->second) : "");
        return S_OK;
    }

    std::map<LONG, std::string> texts;
    int emptyAnswers = 0;  // the first requests of each category get the empty text
    bool withoutRouteList = false;
    std::atomic<HRESULT> failure{S_OK};
    std::array<std::atomic<int>, 16> calls{};
};

class RouteRoot : public ::testing::Test {
  protected:
    RouteRoot()
        : root_(fs::temp_directory_path() /
                ("qvox-routes-" + std::to_string(::getpid()) + "-" +
                 ::testing::UnitTest::GetInstance()->current_test_info()->name())) {
        fs::remove_all(root_);
        fs::create_directories(root_ / "Program");
    }
    ~RouteRoot() override { fs::remove_all(root_); }

    PlatformServices Services() const {
        PlatformServices services;
        // A trailing separator, as a platform may give it: it is cut off.
        services.directories =
            std::make_shared<FixedPlatformDirectories>(root_.string() + "/", "Software\\Test");
        services.settings = store_;
        return services;
    }

    // Installs server as the platform's root object for the rest of the test.
    void Serve(const _com_ptr_t<FakeRouteServer>& server) {
        PlatformServices services = Services();
        services.objects =
            std::make_shared<LibraryPlatformObjects>(IUnknownPtr(server->AsUnknown()));
        platform_ = std::make_unique<ScopedPlatformServices>(services);
    }

    fs::path Cache() const { return root_ / "Program" / "Routes.rlst"; }
    void WriteCache(const std::string& bytes) const {
        std::ofstream(Cache(), std::ios::binary) << bytes;
    }
    std::string ReadCache() const {
        std::ifstream in(Cache(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    // "Test Route" in the user's order entry settings.
    void SetTesting(DWORD value) const {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Test\\Order Entry\\Settings", 0,
                                  nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        RegSetValueExA(key, "Test Route", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), 4);
        RegCloseKey(key);
    }

    fs::path root_;
    std::shared_ptr<SqliteRegistryStore> store_ = SqliteRegistryStore::InMemory();
    ScopedPlatformServices services_{Services()};
    std::unique_ptr<ScopedPlatformServices> platform_;
};

}  // namespace qvox::testing
