// The library's one RouteManager and the ways in: the free route functions and the route
// operations of COXUtil.
#include "qvox/platform/Platform.h"
#include "qvox/routes/RouteManager.h"
#include "qvox/vocabulary/COXUtil.h"

namespace qvox {
namespace {

// The instance, started by whichever thread asks first while any others wait: a function-local
// static is made exactly once. Objects of static storage end in the reverse order of their
// making, so the platform services, made first here, are still there when the manager writes
// its file at unload.
struct StartedRouteManager {
    StartedRouteManager() {
        (void)GetPlatformServices();
        manager.Init();
    }
    RouteManager manager;
};

RouteManager& Routes() {
    static StartedRouteManager instance;
    return instance.manager;
}

CString Trimmed(const char* text) {
    CString trimmed(text != nullptr ? text : "");
    trimmed.Trim();
    return trimmed;
}

}  // namespace

CString GetRoute(const char* code, const char* extra) {
    RouteManager& routes = Routes();
    const CString trimmed = Trimmed(code);
    if (trimmed.view() == "ALLC") return CString("Allocated");
    CString shown = routes.GetDisplayValue(trimmed);
    if (extra != nullptr && *extra != '\0') {
        shown += '/';
        shown += extra;
    }
    return shown;
}

const char* GetRouteCodeFromDisplayValue(const char* display, LONG category) {
    RouteManager& routes = Routes();
    const CString trimmed = Trimmed(display);
    if (trimmed.view() == "Intelligent") return "";
    const std::lock_guard<std::recursive_mutex> lock(routes.m_Lock);
    const CString* code = routes.FindCode(trimmed, category);
    return code != nullptr ? code->GetString() : "";
}

void GetRouteInfoList(CStringList& list, LONG category, bool multiLeg) {
    RouteManager& routes = Routes();
    list.RemoveAll();
    routes.GetRoutelist(list, static_cast<ULONG>(category), multiLeg);
}

ULONG COXUtil::GetOrderRouteCount(ULONG category) {
    return Routes().RouteCount(category);
}

const char* COXUtil::GetOrderRouteItem(ULONG index, ULONG category) {
    return Routes().RouteItem(index, category);
}

}  // namespace qvox
