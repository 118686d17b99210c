#include "Tests/Support/RealData.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cstdlib>

namespace TestSupport {

namespace fs = boost::filesystem;

fs::path realDataFolder()
{
    const char* configured = std::getenv("QUILLET_REAL_DATA");
    const fs::path folder =
        configured ? fs::path(configured) : fs::path(QUILLET_SOURCE_DIR) / "../shared/data";
    return fs::is_directory(folder) ? fs::canonical(folder) : fs::path();
}

std::vector<fs::path> malformedFiles()
{
    std::vector<fs::path> files;
    const fs::path folder = realDataFolder() / "malformed";
    if (!fs::is_directory(folder))
        return files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace TestSupport
