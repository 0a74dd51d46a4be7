#include "qvox/platform/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <vector>

namespace qvox {
namespace {

// Closes a descriptor when the scope ends.
class Descriptor {
  public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    ~Descriptor() {
        if (m_fd >= 0) ::close(m_fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }
    // Closes now and tells whether the close succeeded (a late write error shows here).
    bool Close() {
        const int fd = m_fd;
        m_fd = -1;
        return fd < 0 || ::close(fd) == 0;
    }

  private:
    int m_fd;
};

bool WriteAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace

std::string NativePath(std::string_view path) {
    std::string native(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

ReadWholeFileResult ReadWholeFile(std::string_view path, std::size_t maxBytes, std::string& out) {
    out.clear();
    const std::string native = NativePath(path);
    if (native.empty()) return ReadWholeFileResult::Missing;
    // Opened without blocking so that a FIFO does not hang the reader; the type is checked on
    // the open descriptor, so the file cannot be swapped between the check and the read.
    Descriptor fd(::open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (fd.get() < 0) {
        return errno == ENOENT || errno == ENOTDIR ? ReadWholeFileResult::Missing
                                                   : ReadWholeFileResult::Unreadable;
    }
    struct stat status {};
    if (::fstat(fd.get(), &status) != 0) return ReadWholeFileResult::Unreadable;
    if (!S_ISREG(status.st_mode)) return ReadWholeFileResult::NotAFile;
    if (static_cast<unsigned long long>(status.st_size) > maxBytes) {
        return ReadWholeFileResult::TooLarge;
    }
    out.resize(static_cast<std::size_t>(status.st_size));
    std::size_t have = 0;
    // The file may grow or shrink while it is read: read to its end, never past maxBytes.
    for (;;) {
        if (have == out.size()) {
            if (out.size() >= maxBytes) {
                char probe = 0;
                const ssize_t more = ::read(fd.get(), &probe, 1);
                if (more == 0) break;
                out.clear();
                return more < 0 ? ReadWholeFileResult::Unreadable : ReadWholeFileResult::TooLarge;
            }
            out.resize(std::min(maxBytes, out.size() + 4096));
        }
        const ssize_t got = ::read(fd.get(), out.data() + have, out.size() - have);
        if (got < 0) {
            if (errno == EINTR) continue;
            out.clear();
            return ReadWholeFileResult::Unreadable;
        }
        if (got == 0) break;
        have += static_cast<std::size_t>(got);
    }
    out.resize(have);
    return ReadWholeFileResult::Ok;
}

bool WriteWholeFile(std::string_view path, std::string_view bytes) {
    const std::string native = NativePath(path);
    if (native.empty() || native.back() == '/') return false;
    // The temporary file lies in the target's folder, so that the rename never crosses file
    // systems; its name starts with '.' and does not end in the target's extension, so that a
    // folder listing of "*.xml" never picks it up.
    std::vector<char> temporary(native.begin(), native.end());
    const std::string suffix = ".~XXXXXX";
    const std::size_t slash = native.rfind('/');
    const std::size_t nameAt = slash == std::string::npos ? 0 : slash + 1;
    temporary.insert(temporary.begin() + static_cast<std::ptrdiff_t>(nameAt), '.');
    temporary.insert(temporary.end(), suffix.begin(), suffix.end());
    temporary.push_back('\0');
    Descriptor fd(::mkostemp(temporary.data(), O_CLOEXEC));
    if (fd.get() < 0) return false;
    const bool written = WriteAll(fd.get(), bytes) && ::fsync(fd.get()) == 0;
    // mkostemp makes the file private; a replaced file keeps its own permissions, a new one gets
    // those of an ordinary document.
    struct stat old {};
    const mode_t mode = ::stat(native.c_str(), &old) == 0 ? (old.st_mode & 07777) : 0644;
    const bool closed = ::fchmod(fd.get(), mode) == 0 && fd.Close();
    if (!written || !closed || ::rename(temporary.data(), native.c_str()) != 0) {
        ::unlink(temporary.data());
        return false;
    }
    return true;
}

}  // namespace qvox
