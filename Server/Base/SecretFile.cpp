#include "Server/Base/SecretFile.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"

#include <cstdlib>
#include <sys/stat.h>

namespace Vs {
namespace {

void refuseOthers(const std::string& file)
{
    struct stat status = {};
    if (lstat(file.c_str(), &status) != 0)
        throw Exception(file + " cannot be read");
    if (!S_ISREG(status.st_mode))
        throw Exception(file + " is not a regular file");
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        throw Exception(file + " can be used by others besides its owner; its permissions must be 0600");
}

} // namespace

std::optional<SecretFile::Content> SecretFile::named(const char* variable)
{
    const char* const file = std::getenv(variable);
    if (!file || !*file)
        return std::nullopt;
    refuseOthers(file);
    std::optional<std::string> text = OwnFiles::read(file);
    if (!text)
        throw Exception(std::string(file) + " cannot be read, or belongs to somebody else");
    return Content{file, std::move(*text)};
}

} // namespace Vs
