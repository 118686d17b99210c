#include "Server/DataModel/Native/ComparablePath.h"

#include <boost/filesystem/operations.hpp>

namespace Vs::Native {

namespace fs = boost::filesystem;

fs::path comparablePath(const std::wstring& path)
{
    boost::system::error_code error;
    const fs::path absolute = fs::absolute(fs::path(path)).lexically_normal();
    const fs::path canonical = fs::weakly_canonical(absolute, error);
    return error ? absolute : canonical;
}

} // namespace Vs::Native
