#include "Server/DataModel/PictureName.h"

#include <cstdio>
#include <xxhash.h>

namespace Vs {

std::string pictureStem(const std::string& path)
{
    const XXH128_hash_t hash = XXH3_128bits(path.data(), path.size());
    char text[33];
    std::snprintf(text, sizeof text, "%016llx%016llx", static_cast<unsigned long long>(hash.high64),
                  static_cast<unsigned long long>(hash.low64));
    return text;
}

std::string pictureName(const std::string& path, int64_t modified, uint64_t size)
{
    return pictureStem(path) + '-' + std::to_string(modified) + '-' + std::to_string(size) + ".png";
}

} // namespace Vs
