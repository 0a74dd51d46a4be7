// Folders: CFileFind walks the names of a folder that match a wildcard pattern, and
// CreateDirectoryA makes one folder. Both take paths as the platform writes them ('\' or '/').
//
// The walk has the platform's shape: FindFile starts it, and each FindNextFile moves to the next
// name and answers whether another one follows, so the last name is read after a false answer:
//
//     CFileFind finder;
//     for (bool more = finder.FindFile(pattern); more;) {
//         more = finder.FindNextFile();
//         use(finder.GetFilePath());
//     }
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

class CFileFind {
  public:
    CFileFind() = default;
    CFileFind(const CFileFind&) = delete;
    CFileFind& operator=(const CFileFind&) = delete;

    // Starts a walk over the entries of the pattern's folder whose names match its last part:
    // '*' matches any run of characters, '?' one character, letters match in either case (the
    // platform's file names are case-blind), and "*.*" or a null pattern match every name. The
    // entries come in name order (case-blind, then by bytes), files and folders alike, without
    // "." and "..". False when the folder cannot be read or nothing matches.
    bool FindFile(const char* pattern = nullptr);
    // Moves to the next entry; false when the entry moved to is the last one, and when there is
    // none.
    bool FindNextFile();
    // Ends the walk; the accessors then give empty answers.
    void Close();

    // The current entry: its name, and its path (the pattern's folder part joined with the
    // name by the pattern's own separator).
    CString GetFileName() const;
    CString GetFilePath() const;
    bool IsDirectory() const;
    // Never true here, since "." and ".." are not listed; kept for callers written for the
    // platform's walk.
    bool IsDots() const { return false; }

  private:
    struct Entry {
        std::string name;
        bool directory = false;
    };
    std::string m_folder;  // the pattern up to and including its last separator
    std::vector<Entry> m_entries;
    std::size_t m_next = 0;  // entries before this one have been moved to
};

// Makes the folder at path (its parent must exist). FALSE when it cannot be made, the case of a
// folder or file that is already there included. The security attributes are not used.
BOOL CreateDirectoryA(const char* path, void* securityAttributes);

// True when name matches the wildcard pattern by the rules of CFileFind::FindFile.
bool MatchesWildcard(std::string_view name, std::string_view pattern);

}  // namespace qvox
