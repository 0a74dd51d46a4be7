#include "qvox/vocabulary/OrderIDManipulation.h"

#include <cstring>
#include <string_view>

#include "qvox/platform/Uuid.h"

namespace qvox {
namespace {

// The text of id, at most length characters, never past its terminator.
std::string_view Text(const char* id, ULONG length) {
    if (id == nullptr) return {};
    const std::size_t own = std::strlen(id);
    return std::string_view(id, length < own ? length : own);
}

ULONG NonZero(ULONG localID) {
    while (localID == 0)
        localID = CreateLocalOrderID();
    return localID;
}

}  // namespace

DWORD CreateLocalOrderID() {
    UUID uuid{};
    UuidCreate(&uuid);
    return uuid.Data1;
}

DWORD OrderIDManipulation::CreateLocalOrderID() {
    return qvox::CreateLocalOrderID();
}

CString OrderIDManipulation::FormatClientOrderID(SHORT prefix, const char* tag, ULONG localID) {
    CString id;
    const auto first = static_cast<char>(static_cast<unsigned char>(prefix & 0xFF));
    if (first != '\0') id += first;
    id += CString(Text(tag, 9));
    id.AppendFormat("%.10u", NonZero(localID));
    return id;
}

CString OrderIDManipulation::FormatLocalOrderID(ULONG localID) {
    CString id;
    id.Format("%.10u", NonZero(localID));
    return id;
}

CString OrderIDManipulation::ClientToLocalOrderID(const char* id, ULONG length) {
    // The last ten characters of a client identifier of the given length; a short length
    // means the whole text. The cut counts from the given length, the text runs on to its
    // terminator, and nothing is read beyond it.
    if (id == nullptr) return CString();
    const std::size_t own = std::strlen(id);
    if (length == 0xFFFFFFFFu) length = static_cast<ULONG>(own);
    if (length <= 10) return CString(id);
    const std::size_t start = length - 10u;
    return start < own ? CString(id + start) : CString();
}

CString OrderIDManipulation::ClientToLocalOrderID(const CString& id) {
    return ClientToLocalOrderID(id, 0xFFFFFFFFu);
}

CString OrderIDManipulation::FormatOrderID(const char* id, ULONG length) {
    const std::string_view text = Text(id, length);
    CString result;
    if (text.empty()) return result;
    std::size_t group = text.size() % 4 == 0 ? 4 : text.size() % 4;
    for (std::size_t at = 0; at < text.size(); at += group, group = 4) {
        if (at != 0) result += '-';
        result += CString(text.substr(at, group));
    }
    return result;
}

CString OrderIDManipulation::FormatOrderID(const CString& id) {
    return FormatOrderID(id, 0xFFFFFFFFu);
}

}  // namespace qvox
