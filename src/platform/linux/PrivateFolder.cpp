#include "platform/linux/PrivateFolder.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace orvane {
namespace {

std::filesystem::path absoluteVariable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && value[0] == '/' ? std::filesystem::path(value) : std::filesystem::path();
}

}  // namespace

std::filesystem::path runtimeFolder() { return absoluteVariable("XDG_RUNTIME_DIR"); }

std::filesystem::path userCacheFolder() {
    if (auto cache = absoluteVariable("XDG_CACHE_HOME"); !cache.empty()) return cache;
    if (auto home = absoluteVariable("HOME"); !home.empty()) return home / ".cache";
    if (const passwd* account = ::getpwuid(::geteuid()); account != nullptr && account->pw_dir && account->pw_dir[0] == '/')
        return std::filesystem::path(account->pw_dir) / ".cache";
    return {};
}

std::optional<std::string> makePrivateFolder(const std::filesystem::path& folder) {
    if (folder.empty()) return "no folder for this user's private files";
    const auto make = [](const std::filesystem::path& path) { return ::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST; };
    if (!make(folder) && (errno != ENOENT || !make(folder.parent_path()) || !make(folder)))
        return "cannot create " + folder.string() + ": " + std::strerror(errno);
    struct stat status {};
    if (::lstat(folder.c_str(), &status) != 0) return "cannot read " + folder.string() + ": " + std::strerror(errno);
    if (!S_ISDIR(status.st_mode) || status.st_uid != ::geteuid()) return folder.string() + " is not a directory of this user's own";
    if (status.st_mode & 077) return folder.string() + " can be entered or written by other users";
    return std::nullopt;
}

}  // namespace orvane
