#include "qvox/platform/CFileFind.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "qvox/platform/WholeFile.h"

namespace qvox {
namespace {

char Fold(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool NameBefore(const std::string& a, const std::string& b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const char x = Fold(a[i]);
        const char y = Fold(b[i]);
        if (x != y) return static_cast<unsigned char>(x) < static_cast<unsigned char>(y);
    }
    if (a.size() != b.size()) return a.size() < b.size();
    return a < b;
}

}  // namespace

bool MatchesWildcard(std::string_view name, std::string_view pattern) {
    if (pattern == "*.*" || pattern == "*") return true;
    // Greedy matching with one point of return: the last '*' seen and where its run ended.
    std::size_t n = 0;
    std::size_t p = 0;
    std::size_t starAt = std::string_view::npos;
    std::size_t resumeAt = 0;
    while (n < name.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || Fold(pattern[p]) == Fold(name[n]))) {
            ++n;
            ++p;
        } else if (p < pattern.size() && pattern[p] == '*') {
            starAt = p++;
            resumeAt = n;
        } else if (starAt != std::string_view::npos) {
            p = starAt + 1;
            n = ++resumeAt;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

bool CFileFind::FindFile(const char* pattern) {
    Close();
    std::string full = pattern == nullptr ? std::string("*.*") : std::string(pattern);
    const std::size_t cut = full.find_last_of("\\/");
    const std::string wildcard = cut == std::string::npos ? full : full.substr(cut + 1);
    m_folder = cut == std::string::npos ? std::string() : full.substr(0, cut + 1);
    const std::string native = m_folder.empty() ? std::string(".") : NativePath(m_folder);

    std::error_code error;
    std::filesystem::directory_iterator walk(native, error);
    if (error) return false;
    // An entry that vanishes or cannot be read during the walk ends the walk, not the program.
    for (; walk != std::filesystem::directory_iterator(); walk.increment(error)) {
        if (error) break;
        std::string name = walk->path().filename().string();
        if (!MatchesWildcard(name, wildcard)) continue;
        // A link counts as what it points to, as it does for everyone who opens it.
        std::error_code typeError;
        const bool directory = walk->is_directory(typeError);
        m_entries.push_back({std::move(name), directory});
    }
    std::sort(m_entries.begin(), m_entries.end(),
              [](const Entry& a, const Entry& b) { return NameBefore(a.name, b.name); });
    return !m_entries.empty();
}

bool CFileFind::FindNextFile() {
    if (m_next < m_entries.size()) ++m_next;
    return m_next < m_entries.size();
}

void CFileFind::Close() {
    m_folder.clear();
    m_entries.clear();
    m_next = 0;
}

CString CFileFind::GetFileName() const {
    return m_next == 0 ? CString() : CString(m_entries[m_next - 1].name);
}

CString CFileFind::GetFilePath() const {
    return m_next == 0 ? CString() : CString(m_folder + m_entries[m_next - 1].name);
}

bool CFileFind::IsDirectory() const {
    return m_next != 0 && m_entries[m_next - 1].directory;
}

BOOL CreateDirectoryA(const char* path, void*) {
    if (path == nullptr || *path == '\0') return FALSE;
    return ::mkdir(NativePath(path).c_str(), 0777) == 0 ? TRUE : FALSE;
}

}  // namespace qvox
