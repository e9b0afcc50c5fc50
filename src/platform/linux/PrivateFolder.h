// Folders of the user's own that no other user may enter: where the instance channel and
// orvane-hidutil keep their files.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace orvane {

// $XDG_RUNTIME_DIR when it is an absolute path; empty otherwise.
std::filesystem::path runtimeFolder();
// $XDG_CACHE_HOME, else ~/.cache ($HOME, else the account's home); empty when there is none.
std::filesystem::path userCacheFolder();

// Makes the folder (mode 0700, with its parent if only that is missing, as a fresh account's cache
// folder may be) and checks that it is a folder of this user's own that others can neither enter nor
// write in. The error, if any, in one line.
std::optional<std::string> makePrivateFolder(const std::filesystem::path& folder);

}  // namespace orvane
