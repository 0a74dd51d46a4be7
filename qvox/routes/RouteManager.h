// RouteManager: the routes that the server offers per symbol category, as code (for the server)
// and display text (for the user). It asks the platform for each category's list at first use,
// keeps the lists, and caches them in Routes.rlst (RouteCacheFile.h) from one run to the next.
// The route with the empty code is the default route, always shown as "Intelligent" and never
// stored in a list.
//
// The library holds one instance, started by the first call of a free function below and saved
// when the library unloads. This is the one object of the library built for several threads: a
// single recursive lock guards its lists and flags, and it is held across the platform's calls
// when a lookup refreshes a list, so a slow platform holds up other route lookups meanwhile.
//
// Categories: 2 equities, 0 futures, 12 forex, 3 and 8 options (which share their lists).
//
// Only a call to the platform raises: its _com_error reaches the caller, the lock released, the
// lists and flags as they were.
#pragma once

#include <atomic>
#include <mutex>
#include <string_view>
#include <unordered_map>

#include "qvox/platform/CArchive.h"
#include "qvox/platform/CString.h"
#include "qvox/platform/CStringList.h"
#include "qvox/platform/WinTypes.h"
#include "qvox/routes/RouteCacheFile.h"

namespace qvox {

class COXUtil;

class RouteManager {
  public:
    // Empty lists, not started.
    RouteManager();
    // Uninit: a started manager writes the cache file.
    ~RouteManager();
    // The eight lists and the five flags; the copy has a lock of its own. A started copy
    // writes the cache file too when it ends.
    RouteManager(const RouteManager& other);
    RouteManager& operator=(const RouteManager& other);

    // Starts: every list empty and not loaded, then the cache file read. Each category asks the
    // platform at its first use; until then, and whenever the platform gives nothing, the
    // file's lists serve.
    void Init();
    // If started: writes the cache file and empties the lists.
    void Uninit();
    bool IsInitialized() const;

    // Appends "Intelligent", then every display of the category's list (multi-leg or regular)
    // in code order; the list is not emptied first. For options (3, 8) multi-leg, a result of
    // one or two items loses its "Intelligent": no route gives an empty list, one route only
    // that route. Another category appends nothing.
    void GetRoutelist(CStringList& list, ULONG category, bool multiLeg);
    // The display of a code, looked for in the equities, options, forex and futures lists in
    // this order; "Intelligent" for the empty code; the code itself when no list has it.
    CString GetDisplayValue(const CString& code);
    // The code of a display in the category's regular list, the first in code order; "" for
    // "Intelligent" (exactly), for no match and for another category.
    CString GetCode(const CString& display, LONG category);

  private:
    friend class RouteManagerAccess;  // the tests' and the fuzz target's way to the archive
    friend const char* GetRouteCodeFromDisplayValue(const char* display, LONG category);
    friend class COXUtil;

    // The eight lists and the five flags of other; the caller holds the locks.
    void CopyListsFrom(const RouteManager& other);

    // "Test Route" in the user's order entry settings: a non-zero REG_DWORD.
    static bool IsTestingEnabled();
    // Starts with "QA-": kept only while testing is on.
    static bool IsForQAOnly(const CString& display);
    void GetRoutelist(CStringList& list, const RouteMap& routes);
    // Fetches one category into the maps given, as UpdateAllList does for the options.
    void UpdateList(RouteMap& multiLegRoutes, RouteMap& routes, ULONG category);
    // Asks the platform for every category not yet loaded.
    void UpdateAllList();
    // Fills routes from the platform's list text for the category; true when the list counts as
    // answered (also when there is no platform to ask).
    bool GetListFromServer(RouteMap& routes, ULONG category, bool multiLeg);
    void LoadRoutelist();
    void SaveRoutelist();
    void Serialize(CArchive& ar);
    void SerializeHelper(CArchive& ar, RouteMap& routes, bool testing, ULONG version);

    // Fetches the lists of a category that is not loaded, as GetRoutelist does; the category's
    // regular or multi-leg map, or null for a category without routes. Under the lock.
    RouteMap* RefreshedMap(ULONG category, bool multiLeg);
    // The code in the store for a display, as GetCode finds it; null for none. Under the lock.
    const CString* FindCode(const CString& display, LONG category);
    // The item at index of the regular list of GetRoutelist, as text that the store holds;
    // null beyond the list.
    const char* RouteItem(ULONG index, ULONG category);
    // How many items the regular list of GetRoutelist has.
    ULONG RouteCount(ULONG category);
    // Brings the lookup index up to date with the lists. Under the lock.
    void RefreshIndex();

    // What GetDisplayValue and GetCode find, kept beside the lists so that a lookup is one hash
    // probe: each code to its display in the order the lists are searched, and for each regular
    // list each display to its first code in code order. It points into the lists, and every
    // change of a list marks it stale.
    struct LookupIndex {
        using Map = std::unordered_map<std::string_view, const CString*>;
        Map displayOf;
        Map codeOf[4];  // equities, futures, forex, options
        bool fresh = false;
    };

    RouteMap m_EquitiesRoutes;
    RouteMap m_FuturesRoutes;
    RouteMap m_ForexRoutes;
    RouteMap m_OptionsRoutes;  // categories 3 and 8
    RouteMap m_EquitiesMultiLegRoutes;
    RouteMap m_FuturesMultiLegRoutes;
    RouteMap m_ForexMultiLegRoutes;
    RouteMap m_OptionsMultiLegRoutes;  // the only multi-leg list the platform fills
    bool m_EquitiesLoaded = false;
    bool m_FuturesLoaded = false;
    bool m_ForexLoaded = false;
    bool m_OptionsLoaded = false;
    // Written under the lock; read without it by IsInitialized.
    std::atomic<bool> m_Initialized{false};
    mutable std::recursive_mutex m_Lock;
    LookupIndex m_Index;  // under m_Lock
};

// The text shown for an order's route: "Allocated" for the code "ALLC" (trimmed); otherwise the
// display of the trimmed code, followed by "/" and extra when extra is not empty. Null reads as
// "".
CString GetRoute(const char* code, const char* extra);
// The code of a display text (trimmed) in a category, as RouteManager::GetCode finds it. The
// text is held by the route store and stays valid until the category's list is next refreshed;
// "" is a constant.
const char* GetRouteCodeFromDisplayValue(const char* display, LONG category);
// Empties list, then fills it as RouteManager::GetRoutelist does.
void GetRouteInfoList(CStringList& list, LONG category, bool multiLeg);

}  // namespace qvox
