// RouteManager: the lists, their refresh from the platform and the lookups. The cache file is in
// RouteManagerFile.cpp, the library's instance and the free functions in RouteFunctions.cpp.
#include "qvox/routes/RouteManager.h"

#include <optional>
#include <string_view>

#include "qvox/platform/Bstr.h"
#include "qvox/platform/PlatformDirectories.h"
#include "qvox/platform/PlatformInterfaces.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/platform/Registry.h"
#include "qvox/vocabulary/OrderEnums.h"

namespace qvox {
namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

constexpr const char* kIntelligent = "Intelligent";
constexpr std::string_view kMultiLeg = "MultiLeg";

constexpr ULONG kEquities = SymbolCategoryStock;
constexpr ULONG kFutures = SymbolCategoryFuture;
constexpr ULONG kForex = SymbolCategoryForex;
constexpr ULONG kOptions = SymbolCategoryStockOption;
constexpr ULONG kOtherOptions = SymbolCategoryOtherOption;  // listed with the stock options

bool StartsWith(const CString& text, std::string_view prefix) {
    return text.view().substr(0, prefix.size()) == prefix;
}

// The platform's list text for a category: nothing when there is no root object, or its
// services object has no route-list interface. A failing call raises _com_error.
std::optional<CString> ListTextFromPlatform(ULONG category) {
    const IMVRootPtr root(GetPlatformRootObject());
    if (!root) return std::nullopt;
    IUnknownPtr services;
    ThrowIfFailed(root->GetServices(&services));
    const IMVRouteListPtr routeList(services);
    if (!routeList) return std::nullopt;
    BSTR list = nullptr;
    ThrowIfFailed(routeList->GetRouteList(static_cast<LONG>(category), &list));
    return CString(_bstr_t(list, false).ToString());
}

// One "code,display,kind," record of the platform's list text.
struct RouteRecord {
    std::string_view code;
    std::string_view display;
    std::string_view kind;
};

// The records of a list text. Each field ends at its comma; a field with no comma behind it reads
// as empty and takes nothing from the text. After each record, the next comma decides whether
// another one follows.
template <class OnRecord>
void ParseListText(std::string_view text, OnRecord&& onRecord) {
    const auto field = [&text]() {
        const std::size_t comma = text.find(',');
        if (comma == std::string_view::npos) return std::string_view();
        const std::string_view value = text.substr(0, comma);
        text.remove_prefix(comma + 1);
        return value;
    };
    while (text.find(',') != std::string_view::npos) {
        RouteRecord record;
        record.code = field();
        record.display = field();
        record.kind = field();
        onRecord(record);
    }
}

}  // namespace

RouteManager::RouteManager() = default;

RouteManager::~RouteManager() {
    Uninit();
}

void RouteManager::CopyListsFrom(const RouteManager& other) {
    m_EquitiesRoutes = other.m_EquitiesRoutes;
    m_FuturesRoutes = other.m_FuturesRoutes;
    m_ForexRoutes = other.m_ForexRoutes;
    m_OptionsRoutes = other.m_OptionsRoutes;
    m_EquitiesMultiLegRoutes = other.m_EquitiesMultiLegRoutes;
    m_FuturesMultiLegRoutes = other.m_FuturesMultiLegRoutes;
    m_ForexMultiLegRoutes = other.m_ForexMultiLegRoutes;
    m_OptionsMultiLegRoutes = other.m_OptionsMultiLegRoutes;
    m_EquitiesLoaded = other.m_EquitiesLoaded;
    m_FuturesLoaded = other.m_FuturesLoaded;
    m_ForexLoaded = other.m_ForexLoaded;
    m_OptionsLoaded = other.m_OptionsLoaded;
    m_Initialized = other.m_Initialized.load();
}

RouteManager::RouteManager(const RouteManager& other) {
    const Lock lock(other.m_Lock);
    CopyListsFrom(other);
}

RouteManager& RouteManager::operator=(const RouteManager& other) {
    if (this == &other) return *this;
    const std::scoped_lock lock(m_Lock, other.m_Lock);
    CopyListsFrom(other);
    m_Index.fresh = false;
    return *this;
}

void RouteManager::Init() {
    const Lock lock(m_Lock);
    m_EquitiesLoaded = m_FuturesLoaded = m_ForexLoaded = m_OptionsLoaded = false;
    for (RouteMap* routes : {&m_EquitiesRoutes, &m_FuturesRoutes, &m_ForexRoutes, &m_OptionsRoutes,
                             &m_EquitiesMultiLegRoutes, &m_FuturesMultiLegRoutes,
                             &m_ForexMultiLegRoutes, &m_OptionsMultiLegRoutes}) {
        routes->clear();
    }
    m_Index.fresh = false;
    LoadRoutelist();
    m_Initialized = true;
}

void RouteManager::Uninit() {
    if (!m_Initialized) return;
    const Lock lock(m_Lock);
    if (!m_Initialized) return;
    SaveRoutelist();
    for (RouteMap* routes : {&m_EquitiesRoutes, &m_FuturesRoutes, &m_ForexRoutes, &m_OptionsRoutes,
                             &m_EquitiesMultiLegRoutes, &m_FuturesMultiLegRoutes,
                             &m_ForexMultiLegRoutes, &m_OptionsMultiLegRoutes}) {
        routes->clear();
    }
    m_Index.fresh = false;
    // Stopped for good: a second Uninit, the destructor's, must not write the emptied lists over
    // the file just saved.
    m_Initialized = false;
}

bool RouteManager::IsInitialized() const {
    return m_Initialized;
}

bool RouteManager::IsTestingEnabled() {
    const CString path = QVGetRegistryRootKey(1) + "\\Order Entry\\Settings";
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    BYTE bytes[4] = {};
    DWORD type = REG_NONE;
    DWORD size = sizeof bytes;
    const LSTATUS status = RegQueryValueExA(key, "Test Route", nullptr, &type, bytes, &size);
    RegCloseKey(key);
    return status == ERROR_SUCCESS && type == REG_DWORD && size == sizeof bytes &&
           (bytes[0] | bytes[1] | bytes[2] | bytes[3]) != 0;
}

bool RouteManager::IsForQAOnly(const CString& display) {
    return StartsWith(display, "QA-");
}

void RouteManager::GetRoutelist(CStringList& list, const RouteMap& routes) {
    const Lock lock(m_Lock);
    list.AddTail(kIntelligent);
    for (const auto& [code, display] : routes)
        list.AddTail(display);
}

bool RouteManager::GetListFromServer(RouteMap& routes, ULONG category, bool multiLeg) {
    // The platform is asked before the lock is taken here; a caller that holds it already keeps
    // other lookups waiting for the answer.
    const std::optional<CString> text = ListTextFromPlatform(category);
    if (!text) return true;
    if (text->IsEmpty()) return false;

    const Lock lock(m_Lock);
    const bool testing = IsTestingEnabled();
    routes.clear();
    m_Index.fresh = false;
    ParseListText(text->view(), [&](const RouteRecord& record) {
        const CString display(record.display);
        if (StartsWith(display, "XX-")) return;
        if (multiLeg && record.kind != kMultiLeg) return;
        if (IsForQAOnly(display) && !testing) return;
        routes.emplace(CString(record.code), display);
    });
    return true;
}

void RouteManager::UpdateList(RouteMap& multiLegRoutes, RouteMap& routes, ULONG category) {
    const Lock lock(m_Lock);
    switch (category) {
        case kEquities:
            if (!m_EquitiesLoaded) m_EquitiesLoaded = GetListFromServer(routes, category, false);
            break;
        case kFutures:
            if (!m_FuturesLoaded) m_FuturesLoaded = GetListFromServer(routes, category, false);
            break;
        case kForex:
            if (!m_ForexLoaded) m_ForexLoaded = GetListFromServer(routes, category, false);
            break;
        case kOptions:
        case kOtherOptions:
            if (!m_OptionsLoaded) {
                GetListFromServer(routes, kOptions, false);
                m_OptionsLoaded = GetListFromServer(multiLegRoutes, kOptions, true);
            }
            break;
        default:
            break;
    }
}

void RouteManager::UpdateAllList() {
    const Lock lock(m_Lock);
    if (!m_EquitiesLoaded) m_EquitiesLoaded = GetListFromServer(m_EquitiesRoutes, kEquities, false);
    if (!m_FuturesLoaded) m_FuturesLoaded = GetListFromServer(m_FuturesRoutes, kFutures, false);
    if (!m_ForexLoaded) m_ForexLoaded = GetListFromServer(m_ForexRoutes, kForex, false);
    if (!m_OptionsLoaded) {
        GetListFromServer(m_OptionsRoutes, kOptions, false);
        m_OptionsLoaded = GetListFromServer(m_OptionsMultiLegRoutes, kOptions, true);
    }
}

RouteMap* RouteManager::RefreshedMap(ULONG category, bool multiLeg) {
    switch (category) {
        case kEquities:
            UpdateList(m_EquitiesMultiLegRoutes, m_EquitiesRoutes, category);
            return multiLeg ? &m_EquitiesMultiLegRoutes : &m_EquitiesRoutes;
        case kFutures:
            UpdateList(m_FuturesMultiLegRoutes, m_FuturesRoutes, category);
            return multiLeg ? &m_FuturesMultiLegRoutes : &m_FuturesRoutes;
        case kForex:
            UpdateList(m_ForexMultiLegRoutes, m_ForexRoutes, category);
            return multiLeg ? &m_ForexMultiLegRoutes : &m_ForexRoutes;
        case kOptions:
        case kOtherOptions:
            UpdateList(m_OptionsMultiLegRoutes, m_OptionsRoutes, category);
            return multiLeg ? &m_OptionsMultiLegRoutes : &m_OptionsRoutes;
        default:
            return nullptr;
    }
}

void RouteManager::GetRoutelist(CStringList& list, ULONG category, bool multiLeg) {
    const Lock lock(m_Lock);
    const RouteMap* routes = RefreshedMap(category, multiLeg);
    if (routes == nullptr) return;
    GetRoutelist(list, *routes);
    if ((category == kOptions || category == kOtherOptions) && multiLeg &&
        (list.GetCount() == 1 || list.GetCount() == 2)) {
        list.RemoveAt(list.Find(kIntelligent));
    }
}

void RouteManager::RefreshIndex() {
    if (!m_Index.fresh) {
        m_Index.displayOf.clear();
        for (const RouteMap* routes :
             {&m_EquitiesRoutes, &m_OptionsRoutes, &m_ForexRoutes, &m_FuturesRoutes}) {
            for (const auto& [code, display] : *routes)
                m_Index.displayOf.emplace(code.view(), &display);
        }
        const RouteMap* lists[] = {&m_EquitiesRoutes, &m_FuturesRoutes, &m_ForexRoutes,
                                   &m_OptionsRoutes};
        for (std::size_t i = 0; i < std::size(lists); ++i) {
            m_Index.codeOf[i].clear();
            for (const auto& [code, display] : *lists[i])
                m_Index.codeOf[i].emplace(display.view(), &code);
        }
        m_Index.fresh = true;
    }
}

CString RouteManager::GetDisplayValue(const CString& code) {
    if (code.IsEmpty()) return CString(kIntelligent);
    const Lock lock(m_Lock);
    if (!(m_EquitiesLoaded && m_FuturesLoaded && m_ForexLoaded && m_OptionsLoaded)) {
        UpdateAllList();
    }
    // The first of equities, options, forex and futures that knows the code.
    RefreshIndex();
    const auto found = m_Index.displayOf.find(code.view());
    return found != m_Index.displayOf.end() ? *found->second : code;
}

const CString* RouteManager::FindCode(const CString& display, LONG category) {
    if (!(m_EquitiesLoaded && m_FuturesLoaded && m_ForexLoaded && m_OptionsLoaded)) {
        UpdateAllList();
    }
    std::size_t list = 0;
    switch (category) {
        case static_cast<LONG>(kEquities):
            list = 0;
            break;
        case static_cast<LONG>(kFutures):
            list = 1;
            break;
        case static_cast<LONG>(kForex):
            list = 2;
            break;
        case static_cast<LONG>(kOptions):
        case static_cast<LONG>(kOtherOptions):
            list = 3;
            break;
        default:
            return nullptr;
    }
    // The first code, in code order, whose display is the text.
    RefreshIndex();
    const auto found = m_Index.codeOf[list].find(display.view());
    return found != m_Index.codeOf[list].end() ? found->second : nullptr;
}

CString RouteManager::GetCode(const CString& display, LONG category) {
    if (display.view() == kIntelligent) return CString();
    const Lock lock(m_Lock);
    const CString* code = FindCode(display, category);
    return code != nullptr ? *code : CString();
}

const char* RouteManager::RouteItem(ULONG index, ULONG category) {
    const Lock lock(m_Lock);
    const RouteMap* routes = RefreshedMap(category, false);
    if (routes == nullptr || index > routes->size()) return nullptr;
    if (index == 0) return kIntelligent;
    auto item = routes->begin();
    std::advance(item, index - 1);
    return item->second.GetString();
}

ULONG RouteManager::RouteCount(ULONG category) {
    const Lock lock(m_Lock);
    const RouteMap* routes = RefreshedMap(category, false);
    return routes == nullptr ? 0 : static_cast<ULONG>(routes->size() + 1);
}

}  // namespace qvox
