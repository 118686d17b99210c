#include "Server/Translate/Writing.h"

#include "Server/Base/SystemCalls.h"

#include <boost/algorithm/string/case_conv.hpp>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace Vs::Translate {

std::string unitWord(const Writing& writing)
{
    return writing.unit == "in" ? "INCH" : boost::to_upper_copy(writing.unit);
}

std::string whyNoMore(const std::string& path)
{
    const int descriptor = open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (descriptor < 0)
        return std::strerror(errno);
    // More than a file system may have left in the file's last block.
    const std::string more(size_t(1) << 20, '\0');
    std::string cause;
    if (!writeAll(descriptor, more))
        cause = std::strerror(errno);
    if (close(descriptor) != 0 && cause.empty())
        cause = std::strerror(errno);
    return cause;
}

} // namespace Vs::Translate
