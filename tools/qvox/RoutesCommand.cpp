// qvox routes: the route list a ticket would offer for a platform's list text, with the code and
// display of every route the route store keeps; or what a Routes.rlst cache file holds.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "Commands.h"
#include "qvox/QVOXUtil.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/platform/Registry.h"

namespace qvox::tool {
namespace {

namespace fs = std::filesystem;

struct RoutesOptions {
    std::optional<std::string> text;
    std::string cache;
    int category = 2;
    bool multiLeg = false;
    bool testing = false;
};

const char* CategoryName(int category) {
    switch (category) {
        case 0:
            return "futures";
        case 2:
            return "equities";
        case 3:
            return "options";
        case 8:
            return "other options";
        case 12:
            return "forex";
        default:
            return "no routes";
    }
}

// Single-byte platform text for the terminal.
std::string Shown(const CString& text) {
    return Cp1252ToUtf8(text.view());
}

// The cache blocks that hold a category's regular and multi-leg routes.
std::pair<int, int> BlocksOf(int category) {
    switch (category) {
        case 2:
            return {0, 4};
        case 3:
        case 8:
            return {1, 5};
        case 0:
            return {2, 6};
        case 12:
            return {3, 7};
        default:
            return {-1, -1};
    }
}

// A file in memory that tells how many of its bytes were read.
class CountingFile : public CMemFile {
  public:
    using CMemFile::CMemFile;
    UINT Read(void* buffer, UINT count) override {
        const UINT got = CMemFile::Read(buffer, count);
        read_ += got;
        return got;
    }
    ULONGLONG BytesRead() const { return read_; }

  private:
    ULONGLONG read_ = 0;
};

// Prints a cache block by block; on a damaged file, where reading stopped. The blocks are read
// value by value here, so that the report can name the value that was cut.
int PrintCache(const std::vector<BYTE>& bytes, const std::string& name, std::ostream& out,
               std::ostream& err) {
    CountingFile file(bytes);
    CArchive ar(&file, CArchive::load);
    out << "file      " << name << " (" << bytes.size() << " bytes)\n";
    std::string reading = "the version";
    ULONGLONG valueStart = 0;
    try {
        DWORD version = 0;
        ar >> version;
        out << "version   " << version << (version == 0 ? " (no blocks)" : "") << '\n';
        if (version == 0) return kExitOk;
        for (int block = 0; block < kRouteCacheBlocks; ++block) {
            const std::string blockName = kRouteCacheBlockNames[block];
            reading = "the count of the " + blockName + " block";
            valueStart = file.BytesRead();
            LONG count = 0;
            ar >> count;
            out << blockName << " (" << (count > 0 ? count : 0)
                << (count == 1 ? " route)\n" : " routes)\n");
            for (LONG i = 0; i < count; ++i) {
                CString code;
                CString display;
                reading = "the code of route " + std::to_string(i + 1) + " of " + blockName;
                valueStart = file.BytesRead();
                ar >> code;
                reading = "the display of route " + std::to_string(i + 1) + " of " + blockName;
                valueStart = file.BytesRead();
                ar >> display;
                out << "  " << Shown(code) << " -> " << Shown(display) << '\n';
            }
        }
    } catch (const CArchiveException&) {
        err << "qvox: " << name << ": damaged: reading stopped at byte " << valueStart << " ("
            << reading << " runs past the end at byte " << bytes.size() << ")\n";
        return kExitBadData;
    }
    if (file.BytesRead() < bytes.size()) {
        out << "trailing  " << bytes.size() - file.BytesRead()
            << " bytes after the last block (not read)\n";
    }
    return kExitOk;
}

int RunCache(const RoutesOptions& options, std::ostream& out, std::ostream& err) {
    std::ifstream in(options.cache, std::ios::binary);
    if (!in) {
        err << "qvox: cannot read cache file '" << options.cache << "'\n";
        return kExitUsage;
    }
    const std::vector<BYTE> bytes((std::istreambuf_iterator<char>(in)), {});
    return PrintCache(bytes, options.cache, out, err);
}

// A route manager of its own on the list text, with a root directory of its own so that no
// cache or setting of the user is read or written; the cache it writes at the end shows the
// routes it kept.
int RunText(const RoutesOptions& options, std::ostream& out, std::ostream& err) {
    std::string pattern = (fs::temp_directory_path() / "qvox-routes-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        err << "qvox: cannot make a temporary directory\n";
        return kExitUsage;
    }
    const fs::path root = pattern;
    fs::create_directories(root / "Program");

    const auto platform = CMVRoot::Create();
    for (LONG category : {0, 2, 3, 12})
        platform->SetRouteList(category, CString(*options.text));
    PlatformServices services;
    services.directories = std::make_shared<FixedPlatformDirectories>(root.string(), "Software");
    services.settings = SqliteRegistryStore::InMemory();
    services.objects = std::make_shared<LibraryPlatformObjects>(IUnknownPtr(platform->AsUnknown()));
    const ScopedPlatformServices scoped(services);
    if (options.testing) {
        HKEY key = nullptr;
        const DWORD on = 1;
        RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Order Entry\\Settings", 0, nullptr, 0,
                        KEY_ALL_ACCESS, nullptr, &key, nullptr);
        RegSetValueExA(key, "Test Route", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&on), 4);
        RegCloseKey(key);
    }

    CStringList list;
    {
        RouteManager manager;
        manager.Init();
        manager.GetRoutelist(list, static_cast<ULONG>(options.category), options.multiLeg);
    }
    out << "category  " << options.category << " (" << CategoryName(options.category) << "), "
        << (options.multiLeg ? "multi-leg" : "regular") << " list\n";
    out << "offered  ";
    if (list.IsEmpty()) out << " (nothing)";
    for (POSITION pos = list.GetHeadPosition(); pos != nullptr;)
        out << ' ' << Shown(list.GetNext(pos)) << (pos != nullptr ? " |" : "");
    out << '\n';

    std::ifstream in(root / "Program" / "Routes.rlst", std::ios::binary);
    const std::vector<BYTE> bytes((std::istreambuf_iterator<char>(in)), {});
    fs::remove_all(root);
    CMemFile file(bytes);
    CArchive ar(&file, CArchive::load);
    DWORD version = 0;
    ar >> version;
    const auto [regular, multiLeg] = BlocksOf(options.category);
    const int wanted = options.multiLeg ? multiLeg : regular;
    for (int block = 0; block < kRouteCacheBlocks; ++block) {
        ReadRouteBlock(ar, [&](const CString& code, const CString& display) {
            if (block == wanted) out << "  " << Shown(code) << " -> " << Shown(display) << '\n';
        });
    }
    return kExitOk;
}

}  // namespace

void AddRoutesCommand(CLI::App& app, Action& action) {
    auto options = std::make_shared<RoutesOptions>();
    CLI::App* routes = app.add_subcommand(
        "routes",
        "Show the route list a ticket offers for a platform list text, with the code and "
        "display of each route; or show what a Routes.rlst cache file holds");
    routes->add_option("-t,--text", options->text,
                       "The platform's list text: 'code,display,kind,' records");
    routes->add_option("--cache", options->cache, "A Routes.rlst file to show block by block");
    routes
        ->add_option("-c,--category", options->category,
                     "Symbol category: 0 futures, 2 equities, 3 and 8 options, 12 forex")
        ->check(CLI::Range(0, 254));
    routes->add_flag("-m,--multi-leg", options->multiLeg, "The multi-leg list");
    routes->add_flag("--testing", options->testing, "Keep test routes (displays 'QA-...')");
    routes->callback([options, &action] {
        action = [options](std::ostream& out, std::ostream& err) {
            if (options->text.has_value() == !options->cache.empty()) {
                err << "qvox: give either --text or --cache\n";
                return kExitUsage;
            }
            return options->text ? RunText(*options, out, err) : RunCache(*options, out, err);
        };
    });
}

}  // namespace qvox::tool
