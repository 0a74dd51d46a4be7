// Loading templates beside a bare libxml2 parse of the same bytes: one typical template (three
// brackets of two orders, 3 KB) from text and from its file, and a folder of 200 templates,
// reported per template.
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "BaselineReporter.h"
#include "qvox/platform/CodePage.h"
#include "qvox/platform/Platform.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplates.h"

namespace {

constexpr int kFolderTemplates = 200;
constexpr int kParseOptions =
    XML_PARSE_NONET | XML_PARSE_NOBLANKS | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

// The typical template, and a root holding a folder of kFolderTemplates copies of it.
struct Fixture {
    Fixture() {
        const std::string example = std::string(QVOX_EXAMPLES) +
                                    "/Templates/Conditional Orders/Stocks/OSO/"
                                    "Three Targets 33-33-34.xml";
        std::ifstream in(example, std::ios::binary);
        utf8.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        if (utf8.empty()) std::abort();
        wide = qvox::Utf8ToWide(utf8);
        std::string pattern =
            (std::filesystem::temp_directory_path() / "qvox-bench-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) std::abort();
        root = pattern;
        const std::filesystem::path folder = root / "Templates/Conditional Orders/Stocks/OSO";
        std::filesystem::create_directories(folder);
        for (int i = 0; i < kFolderTemplates; ++i) {
            const std::string path = (folder / ("t" + std::to_string(i) + ".xml")).string();
            std::ofstream(path, std::ios::binary) << utf8;
            files.push_back(path);
        }
        file = files.front();
    }
    ~Fixture() { std::filesystem::remove_all(root); }

    std::string utf8;
    std::wstring wide;
    std::filesystem::path root;
    std::vector<std::string> files;
    std::string file;
};

Fixture& Data() {
    static Fixture fixture;
    return fixture;
}

void LoadText(benchmark::State& state) {
    const Fixture& data = Data();
    qvox::CQVOXCOTOSOTemplate item;
    for (auto _ : state) {
        if (!item.Load(data.wide.c_str())) state.SkipWithError("not loaded");
        benchmark::DoNotOptimize(item);
    }
}

void LoadTextBaseline(benchmark::State& state) {
    const Fixture& data = Data();
    for (auto _ : state) {
        xmlDocPtr doc = xmlReadMemory(data.utf8.data(), static_cast<int>(data.utf8.size()), nullptr,
                                      nullptr, kParseOptions);
        benchmark::DoNotOptimize(doc);
        xmlFreeDoc(doc);
    }
}

void LoadFile(benchmark::State& state) {
    const Fixture& data = Data();
    qvox::CQVOXCOTOSOTemplate item;
    for (auto _ : state) {
        if (!item.Load(data.file.c_str())) state.SkipWithError("not loaded");
        benchmark::DoNotOptimize(item);
    }
}

void LoadFileBaseline(benchmark::State& state) {
    const Fixture& data = Data();
    for (auto _ : state) {
        xmlDocPtr doc = xmlReadFile(data.file.c_str(), nullptr, kParseOptions);
        benchmark::DoNotOptimize(doc);
        xmlFreeDoc(doc);
    }
}

void PerTemplate(benchmark::State& state) {
    state.counters["per_template"] =
        benchmark::Counter(kFolderTemplates, benchmark::Counter::kIsIterationInvariantRate |
                                                 benchmark::Counter::kInvert);
}

void LoadFolder(benchmark::State& state) {
    const Fixture& data = Data();
    qvox::ScopedPlatformServices services(
        {.directories = std::make_shared<qvox::FixedPlatformDirectories>(data.root.string(),
                                                                         "Software\\Bench")});
    qvox::CQVOXCOTOSOTemplates list(2);
    for (auto _ : state) {
        list.Load();
        if (list.GetCount() != kFolderTemplates) state.SkipWithError("not all loaded");
    }
    PerTemplate(state);
}

// The same files read by the parser alone.
void LoadFolderBaseline(benchmark::State& state) {
    const Fixture& data = Data();
    for (auto _ : state) {
        for (const std::string& path : data.files) {
            xmlDocPtr doc = xmlReadFile(path.c_str(), nullptr, kParseOptions);
            benchmark::DoNotOptimize(doc);
            xmlFreeDoc(doc);
        }
    }
    PerTemplate(state);
}

}  // namespace

BENCHMARK(LoadText)->Name("LoadText/Load(wchar_t*)");
BENCHMARK(LoadTextBaseline)->Name("LoadText/baseline");
BENCHMARK(LoadFile)->Name("LoadFile/Load(path)");
BENCHMARK(LoadFileBaseline)->Name("LoadFile/baseline");
BENCHMARK(LoadFolder)->Name("Folder/Load 200 templates");
BENCHMARK(LoadFolderBaseline)->Name("Folder/baseline");

QVOX_BENCHMARK_MAIN()
