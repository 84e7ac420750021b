#include "output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

bool writeAll(int descriptor, std::string const& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        ssize_t const count = write(descriptor, text.data() + done, text.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool overwrite(std::string const& path, std::string const& text) {
    int const descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (descriptor < 0) return false;
    bool const written = writeAll(descriptor, text);
    return close(descriptor) == 0 && written;
}

bool replace(std::string const& path, std::string const& text, mode_t mode) {
    std::string const pattern = path + ".XXXXXX";
    std::vector<char> fresh(pattern.c_str(), pattern.c_str() + pattern.size() + 1);
    int const descriptor = mkstemp(fresh.data());
    if (descriptor < 0) return false;
    bool const written = fchmod(descriptor, mode & 07777) == 0 && writeAll(descriptor, text) &&
                         fsync(descriptor) == 0;
    bool const closed = close(descriptor) == 0;
    if (written && closed && std::rename(fresh.data(), path.c_str()) == 0) return true;
    std::remove(fresh.data());
    return false;
}

} // namespace

bool writeFile(std::string const& path, std::string const& text) {
    struct stat existing;
    bool const isRegular = lstat(path.c_str(), &existing) == 0 && S_ISREG(existing.st_mode);
    return isRegular ? replace(path, text, existing.st_mode) : overwrite(path, text);
}
