#include "Server/DataModel/HeldFiles.h"

#include <map>
#include <utility>

namespace Vs {
namespace {

std::map<const Document*, FileUser>& users()
{
    static std::map<const Document*, FileUser> all;
    return all;
}

} // namespace

const FileUser* HeldFiles::holder(const Document* document)
{
    const auto found = users().find(document);
    return found == users().end() ? nullptr : &found->second;
}

void HeldFiles::note(const Document* document, std::optional<FileUser> user)
{
    if (user)
        users()[document] = std::move(*user);
    else
        users().erase(document);
}

} // namespace Vs
