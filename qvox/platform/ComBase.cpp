#include "qvox/platform/ComBase.h"

#include <cstdio>
#include <utility>
#include <vector>

#include "qvox/platform/ComObject.h"

namespace qvox {

std::string GuidToString(const GUID& g) {
    char text[40];
    std::snprintf(text, sizeof(text), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  static_cast<unsigned>(g.Data1), static_cast<unsigned>(g.Data2),
                  static_cast<unsigned>(g.Data3), g.Data4[0], g.Data4[1], g.Data4[2], g.Data4[3],
                  g.Data4[4], g.Data4[5], g.Data4[6], g.Data4[7]);
    return text;
}

_com_error::_com_error(HRESULT hr) noexcept : m_hr(hr) {
    std::snprintf(m_text, sizeof(m_text), "COM error 0x%08X", static_cast<unsigned>(hr));
}

void _com_issue_error(HRESULT hr) {
    throw _com_error(hr);
}

namespace com_detail {

void DestroyObject(void* object, void (*destroy)(void*)) noexcept {
    struct Pending {
        bool destroying = false;
        std::vector<std::pair<void*, void (*)(void*)>> objects;
    };
    thread_local Pending pending;
    if (pending.destroying) {
        pending.objects.emplace_back(object, destroy);
        return;
    }
    pending.destroying = true;
    destroy(object);
    while (!pending.objects.empty()) {
        const auto [next, destroyNext] = pending.objects.back();
        pending.objects.pop_back();
        destroyNext(next);
    }
    pending.destroying = false;
}

}  // namespace com_detail

}  // namespace qvox

std::size_t std::hash<qvox::GUID>::operator()(const qvox::GUID& g) const noexcept {
    std::size_t h = g.Data1;
    h = h * 31 + g.Data2;
    h = h * 31 + g.Data3;
    for (const auto byte : g.Data4) {
        h = h * 31 + byte;
    }
    return h;
}
