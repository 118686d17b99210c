#include "Server/DataModel/CloudIdentifiers.h"

#include "Server/Base/PathInfo.h"

namespace Vs {
namespace {

std::function<std::string(const std::wstring&)>& installed()
{
    static std::function<std::string(const std::wstring&)> source;
    return source;
}

} // namespace

void CloudIdentifiers::source(std::function<std::string(const std::wstring&)> source)
{
    installed() = std::move(source);
}

std::string CloudIdentifiers::of(const std::wstring& path, const std::string& old)
{
    if (!installed() || path.empty())
        return old;
    if (PathInfo::isPathInCloudCache(path)) {
        const std::string found = installed()(path);
        return found.empty() ? old : found;
    }
    // Identifiers of the drive are paths. Others are those of other services, and stay.
    return old.starts_with('/') ? std::string() : old;
}

} // namespace Vs
