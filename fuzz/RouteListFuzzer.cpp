// The platform's route list text, whatever it holds: the lists take only what the rules let in,
// and every display offered leads back to itself through its code.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "FuzzCheck.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/routes/RouteManager.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qvox;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto root = CMVRoot::Create();
    for (LONG category : {0, 2, 3, 12})
        root->SetRouteList(category, CString(text));
    PlatformServices services;
    services.directories =
        std::make_shared<FixedPlatformDirectories>("/nonexistent", "Software\\Fuzz");
    services.settings = SqliteRegistryStore::InMemory();
    services.objects = std::make_shared<LibraryPlatformObjects>(IUnknownPtr(root->AsUnknown()));
    const ScopedPlatformServices scoped(services);

    RouteManager manager;
    manager.Init();
    for (const auto& [category, multiLeg] :
         {std::pair{2u, false}, std::pair{3u, true}, std::pair{12u, false}}) {
        CStringList list;
        manager.GetRoutelist(list, category, multiLeg);
        for (POSITION pos = list.GetHeadPosition(); pos != nullptr;) {
            const CString display = list.GetNext(pos);
            const std::string_view shown = display.view();
            fuzz::Require(shown.substr(0, 3) != "XX-" && shown.substr(0, 3) != "QA-");
            fuzz::Require(shown.find(',') == std::string_view::npos);
            if (shown == "Intelligent" || multiLeg) continue;
            const CString code = manager.GetCode(display, static_cast<LONG>(category));
            if (category == 2 && !code.IsEmpty()) {
                fuzz::Require(manager.GetDisplayValue(code) == display);
            }
        }
    }
    return 0;
}
