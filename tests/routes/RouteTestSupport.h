// What the route tests share: a platform root directory of their own with its Program folder,
// an in-memory settings store, a platform root object serving list texts, and cache file bytes.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <latch>
#include <thread>

#include "qvox/platform/Bstr.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/platform/Registry.h"
#include "qvox/routes/RouteManager.h"

namespace qvox::testing {

namespace fs = std::filesystem;
using Block = std::vector<std::pair<std::string, std::string>>;
using Items = std::vector<CString>;

inline std::string U32(std::uint32_t value) {
    return {static_cast<char>(value), static_cast<char>(value >> 8), static_cast<char>(value >> 16),
            static_cast<char>(value >> 24)};
}

// A cache file: the version and the blocks given, the others empty; texts below 255 bytes.
inline std::string CacheBytes(std::uint32_t version, const std::vector<Block>& blocks) {
    std::string bytes = U32(version);
    for (std::size_t i = 0; i < 8; ++i) {
        bytes += U32(i < blocks.size() ? static_cast<std::uint32_t>(blocks[i].size()) : 0);
        for (const auto& [code, display] : i < blocks.size() ? blocks[i] : Block{})
            bytes += char(code.size()) + code + char(display.size()) + display;
    }
    return bytes;
}

// The items GetRoutelist appends to a list that held start.
inline Items ListOf(RouteManager& manager, ULONG category, bool multiLeg, Items start = {}) {
    CStringList list;
    for (const CString& item : start)
        list.AddTail(item);
    manager.GetRoutelist(list, category, multiLeg);
    Items items;
    for (POSITION pos = list.GetHeadPosition(); pos != nullptr;)
        items.push_back(list.GetNext(pos));
    return items;
}

// Runs body(0) to body(count - 1) in threads that start together; returns when all have ended.
inline void Together(int count, const std::function<void(int)>& body) {
    std::latch start(count);
    std::vector<std::thread> threads;
    for (int t = 0; t < count; ++t)
        threads.emplace_back([&, t] { start.arrive_and_wait(), body(t); });
    for (std::thread& thread : threads)
        thread.join();
}

// The platform's root object, counting the requests per category. Set it up before it serves:
// only the counters and the failure change while threads use it.
class FakeRouteServer final : public ComObject<IMVRoot, IMVRouteList> {
  public:
    HRESULT GetServices(IUnknown** services) override {
        // Some other object when it should lack the route-list interface.
        *services = withoutRouteList ? CMVCollection::Create().Detach() : AsUnknown();
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
    RouteRoot() { fs::create_directories(root_ / "Program"); }
    ~RouteRoot() override { fs::remove_all(root_); }

    // A trailing separator, as a platform may give it, is cut off.
    PlatformServices Services() const {
        PlatformServices services;
        services.directories =
            std::make_shared<FixedPlatformDirectories>(root_.string() + "/", "Software\\Test");
        services.settings = store_;
        return services;
    }
    // Installs a root object serving texts for the rest of the test; returns it.
    FakeRouteServer& Serve(std::map<LONG, std::string> texts, int emptyAnswers = 0) {
        server_ = MakeComObject<FakeRouteServer>();
        server_->texts = std::move(texts);
        server_->emptyAnswers = emptyAnswers;
        PlatformServices services = Services();
        services.objects =
            std::make_shared<LibraryPlatformObjects>(IUnknownPtr(server_->AsUnknown()));
        platform_.reset();  // the previous one first, or it would restore what it replaced
        platform_ = std::make_unique<ScopedPlatformServices>(services);
        return *server_;
    }

    fs::path Cache() const { return root_ / "Program" / "Routes.rlst"; }
    void WriteCache(const std::string& bytes) const {
        std::ofstream(Cache(), std::ios::binary) << bytes;
    }
    std::string ReadCache() const {
        std::ifstream in(Cache(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    void SetTesting(DWORD value) const {
        HKEY key = nullptr;
        RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Test\\Order Entry\\Settings", 0, nullptr, 0,
                        KEY_ALL_ACCESS, nullptr, &key, nullptr);
        RegSetValueExA(key, "Test Route", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), 4);
        RegCloseKey(key);
    }

    fs::path root_ = fs::temp_directory_path() /
                     ("qvox-routes-" + std::to_string(::getpid()) + "-" +
                      ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::shared_ptr<SqliteRegistryStore> store_ = SqliteRegistryStore::InMemory();
    ScopedPlatformServices services_{Services()};
    _com_ptr_t<FakeRouteServer> server_;
    std::unique_ptr<ScopedPlatformServices> platform_;
};

}  // namespace qvox::testing
