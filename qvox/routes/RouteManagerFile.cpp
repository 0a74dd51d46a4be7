// RouteManager: the cache file Routes.rlst, read at Init and written at Uninit.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <string>

#include "qvox/platform/CFile.h"
#include "qvox/platform/PlatformDirectories.h"
#include "qvox/routes/RouteManager.h"

namespace qvox {
namespace {

// The platform's path buffer.
constexpr DWORD kPathBuffer = 260;

std::string NativePath(const CString& path) {
    std::string native = path.str();
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

// Makes what was written to path durable before it takes the cache's place; false if the system
// says it could not.
bool SyncToDisk(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    const bool synced = ::fsync(fd) == 0;
    ::close(fd);
    return synced;
}

}  // namespace

void WriteRouteBlock(CArchive& ar, const RouteMap& routes) {
    ar << static_cast<LONG>(routes.size());
    for (const auto& [code, display] : routes)
        ar << code << display;
}

CString RouteCachePath() {
    char root[kPathBuffer] = {};
    if (GetKelvarRootDir(root, kPathBuffer) >= kPathBuffer) return CString();
    std::string directory(root);
    while (!directory.empty() && (directory.back() == '\\' || directory.back() == '/'))
        directory.pop_back();
    return CString(directory + "\\Program\\Routes.rlst");
}

void RouteManager::SerializeHelper(CArchive& ar, RouteMap& routes, bool testing,
                                   ULONG /*version*/) {
    if (ar.IsStoring()) {
        WriteRouteBlock(ar, routes);
        return;
    }
    // Each entry goes in as soon as it is read, so a file cut short keeps what came before.
    ReadRouteBlock(ar, [&](const CString& code, const CString& display) {
        if (IsForQAOnly(display) && !testing) return;
        routes.emplace(code, display);
    });
}

void RouteManager::Serialize(CArchive& ar) {
    RouteMap* const blocks[kRouteCacheBlocks] = {
        &m_EquitiesRoutes,        &m_OptionsRoutes,          &m_FuturesRoutes,
        &m_ForexRoutes,           &m_EquitiesMultiLegRoutes, &m_OptionsMultiLegRoutes,
        &m_FuturesMultiLegRoutes, &m_ForexMultiLegRoutes};
    if (ar.IsStoring()) {
        ar << kRouteCacheVersion;
        for (RouteMap* routes : blocks)
            SerializeHelper(ar, *routes, false, kRouteCacheVersion);
        return;
    }
    m_Index.fresh = false;
    DWORD version = 0;
    ar >> version;
    if (version == 0) return;
    const bool testing = IsTestingEnabled();
    for (RouteMap* routes : blocks) {
        // The regular lists take the file's alone; the multi-leg ones were emptied by Init.
        if (routes == &m_EquitiesRoutes || routes == &m_FuturesRoutes || routes == &m_ForexRoutes ||
            routes == &m_OptionsRoutes) {
            routes->clear();
        }
        SerializeHelper(ar, *routes, testing, version);
    }
}

void RouteManager::LoadRoutelist() {
    const CString path = RouteCachePath();
    if (path.IsEmpty()) return;
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary)) return;
    try {
        CArchive ar(&file, CArchive::load);
        Serialize(ar);
    } catch (...) {
        // A damaged or cut file: the lists keep what was read.
    }
}

void RouteManager::SaveRoutelist() {
    const CString path = RouteCachePath();
    if (path.IsEmpty()) return;
    // Written whole beside the cache, then put in its place: a reader, or a crash, never meets
    // half a file, and a failed write leaves the last good one.
    // A name of its own for every write: copies of a manager may save at once, in this process
    // or another.
    static std::atomic<unsigned> writes{0};
    const CString temporary = path + "." + CString(std::to_string(::getpid())) + "-" +
                              CString(std::to_string(writes.fetch_add(1))) + ".tmp";
    const std::string nativeTemporary = NativePath(temporary);
    bool written = false;
    {
        CFile file;
        if (!file.Open(temporary, CFile::modeCreate | CFile::modeWrite | CFile::typeBinary)) {
            return;
        }
        try {
            CArchive ar(&file, CArchive::store);
            Serialize(ar);
            ar.Close();
            file.Close();
            written = true;
        } catch (...) {
            // A full disk or a failing device: the old cache stays as it was.
        }
    }
    if (!written || !SyncToDisk(nativeTemporary) ||
        std::rename(nativeTemporary.c_str(), NativePath(path).c_str()) != 0) {
        std::remove(nativeTemporary.c_str());
    }
}

}  // namespace qvox
