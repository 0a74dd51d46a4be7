// Route lookups on a loaded manager, beside a bare std::map::find of the same key: what the lock,
// the loaded flags and the search order cost. The threaded runs show the throughput of one
// manager shared by 1, 2 and 8 threads (one lock guards it), beside lock-free finds.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "BaselineReporter.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/routes/RouteManager.h"

namespace {

using namespace qvox;

struct Route {
    std::string code;
    std::string display;
    LONG category;
};

// 40 equities, 30 options, 20 futures and 10 forex routes.
std::vector<Route> MakeRoutes() {
    std::vector<Route> routes;
    const struct {
        LONG category;
        int count;
        const char* prefix;
    } lists[] = {{2, 40, "E"}, {3, 30, "O"}, {0, 20, "F"}, {12, 10, "X"}};
    for (const auto& list : lists) {
        for (int i = 0; i < list.count; ++i) {
            routes.push_back({list.prefix + std::to_string(100 + i),
                              std::string(list.prefix) + " route " + std::to_string(i),
                              list.category});
        }
    }
    return routes;
}

const std::vector<Route>& Routes() {
    static const std::vector<Route> routes = MakeRoutes();
    return routes;
}

// A manager that has loaded every category from a platform serving the routes above.
RouteManager& Loaded() {
    static RouteManager* manager = [] {
        const auto root = CMVRoot::Create();
        std::map<LONG, std::string> texts;
        for (const Route& route : Routes())
            texts[route.category] += route.code + "," + route.display + ",,";
        for (const auto& [category, text] : texts)
            root->SetRouteList(category, CString(text));
        PlatformServices services;
        services.directories =
            std::make_shared<FixedPlatformDirectories>("/nonexistent", "Software\\Bench");
        services.settings = SqliteRegistryStore::InMemory();
        services.objects = std::make_shared<LibraryPlatformObjects>(IUnknownPtr(root->AsUnknown()));
        SetPlatformServices(services);
        auto* loaded = new RouteManager;  // never ends: it would write no file anyway
        loaded->Init();
        loaded->GetDisplayValue("E100");
        return loaded;
    }();
    return *manager;
}

using PlainMaps = std::map<LONG, std::map<std::string, std::string, std::less<>>>;

// The same lists as plain maps by category, from code to display or the other way round.
const PlainMaps& Plain(bool byDisplay = false) {
    static const auto maps = [] {
        std::pair<PlainMaps, PlainMaps> plain;
        for (const Route& route : Routes()) {
            plain.first[route.category].emplace(route.code, route.display);
            plain.second[route.category].emplace(route.display, route.code);
        }
        return plain;
    }();
    return byDisplay ? maps.second : maps.first;
}

// Keys from every list in turn, as CStrings made once.
const std::vector<CString>& Codes() {
    static const std::vector<CString> codes = [] {
        std::vector<CString> made;
        for (const Route& route : Routes())
            made.emplace_back(route.code);
        return made;
    }();
    return codes;
}
const std::vector<CString>& Displays() {
    static const std::vector<CString> displays = [] {
        std::vector<CString> made;
        for (const Route& route : Routes())
            made.emplace_back(route.display);
        return made;
    }();
    return displays;
}

void DisplayValue(benchmark::State& state) {
    RouteManager& manager = Loaded();
    std::size_t i = static_cast<std::size_t>(state.thread_index()) * 7;
    for (auto _ : state) {
        benchmark::DoNotOptimize(manager.GetDisplayValue(Codes()[i]));
        i = (i + 1) % Codes().size();
    }
    state.SetItemsProcessed(state.iterations());
}

// One find in the list that holds the key.
void DisplayBaseline(benchmark::State& state) {
    std::size_t i = static_cast<std::size_t>(state.thread_index()) * 7;
    for (auto _ : state) {
        const Route& route = Routes()[i];
        benchmark::DoNotOptimize(Plain().at(route.category).find(Codes()[i].view()));
        i = (i + 1) % Routes().size();
    }
    state.SetItemsProcessed(state.iterations());
}

void Code(benchmark::State& state) {
    RouteManager& manager = Loaded();
    std::size_t i = static_cast<std::size_t>(state.thread_index()) * 7;
    for (auto _ : state) {
        benchmark::DoNotOptimize(manager.GetCode(Displays()[i], Routes()[i].category));
        i = (i + 1) % Routes().size();
    }
    state.SetItemsProcessed(state.iterations());
}

// One find of the display in a map of the category from display to code.
void CodeBaseline(benchmark::State& state) {
    std::size_t i = static_cast<std::size_t>(state.thread_index()) * 7;
    for (auto _ : state) {
        const Route& route = Routes()[i];
        benchmark::DoNotOptimize(Plain(true).at(route.category).find(Displays()[i].view()));
        i = (i + 1) % Routes().size();
    }
    state.SetItemsProcessed(state.iterations());
}

}  // namespace

BENCHMARK(DisplayValue)->Name("DisplayValue/GetDisplayValue");
BENCHMARK(DisplayBaseline)->Name("DisplayValue/baseline");
BENCHMARK(Code)->Name("Code/GetCode");
BENCHMARK(CodeBaseline)->Name("Code/baseline");
BENCHMARK(DisplayValue)->Name("Threads/GetDisplayValue")->ThreadRange(1, 8)->UseRealTime();
BENCHMARK(Code)->Name("Threads/GetCode")->ThreadRange(1, 8)->UseRealTime();
BENCHMARK(DisplayBaseline)->Name("Threads/map find")->ThreadRange(1, 8)->UseRealTime();

QVOX_BENCHMARK_MAIN()
