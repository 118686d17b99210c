#include "Server/DataModel/Recovery/Private/SourceState.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>
#include <xxhash.h>

namespace Vs::Recovery {

namespace {

constexpr off_t kEnd = off_t(64) << 10; // bytes

/// Empty where nothing can be read. A pipe is not waited for.
std::string digestOfEnd(const std::string& path)
{
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return {};
    struct stat state = {};
    std::vector<char> end;
    if (fstat(file, &state) == 0 && S_ISREG(state.st_mode)) {
        end.resize(static_cast<size_t>(std::min<off_t>(state.st_size, kEnd)));
        const ssize_t got =
            pread(file, end.data(), end.size(), state.st_size - static_cast<off_t>(end.size()));
        if (got < 0 || static_cast<size_t>(got) != end.size())
            end.clear();
    }
    close(file);
    return end.empty()
               ? std::string()
               : std::to_string(state.st_size) + '-' + std::to_string(XXH3_64bits(end.data(), end.size()));
}

} // namespace

SourceState SourceState::of(const std::string& path)
{
    return {FileIdentity::of(path), digestOfEnd(path)};
}

bool SourceState::holdsTheSameAs(const SourceState& other) const
{
    return identity == other.identity || (!digest.empty() && digest == other.digest);
}

} // namespace Vs::Recovery
