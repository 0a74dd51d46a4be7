// What the template tests share: a private folder that is removed afterwards, files in it, and
// the platform's root directory pointed at it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "qvox/platform/Platform.h"

namespace qvox::test {

class TempFolder {
  public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "qvox-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) std::abort();
        m_path = pattern;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::string operator/(const std::string& name) const { return (m_path / name).string(); }

    // Writes bytes to the file name below the folder (making its folders) and gives its path.
    std::string Write(const std::string& name, const std::string& bytes) const {
        const std::filesystem::path file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return file.string();
    }

    static std::string Read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

  private:
    std::filesystem::path m_path;
};

// The platform's root directory is folder for the scope's lifetime.
class ScopedRoot {
  public:
    explicit ScopedRoot(const TempFolder& folder)
        : m_services({.directories = std::make_shared<FixedPlatformDirectories>(
                          folder.path().string(), "Software\\Test")}) {}

  private:
    ScopedPlatformServices m_services;
};

// A field element of a template file.
inline std::string Field(const std::string& name, const std::string& usage,
                         const std::string& operation, const std::string& location,
                         const std::string& value = "") {
    return "<Field Name=\"" + name + "\" Usage=\"" + usage + "\" Operation=\"" + operation +
           "\" Location=\"" + location + "\">" + value + "</Field>";
}

// A template file of kind type whose body (properties and collections) is given.
inline std::string TemplateFile(const std::string& type, const std::string& name,
                                const std::string& body, const std::string& version = "1") {
    return "<?xml version=\"1.0\"?>\n<QVXML>\n <Template Name=\"" + name + "\" Type=\"" + type +
           "\" Version=\"" + version + "\" Description=\"d\" Action=\"\">\n" + body +
           "\n </Template>\n</QVXML>\n";
}

}  // namespace qvox::test
