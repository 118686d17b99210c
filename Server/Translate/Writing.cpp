#include "Server/Translate/Writing.h"

#include <boost/algorithm/string/case_conv.hpp>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

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
    const std::vector<char> more(size_t(1) << 20);
    std::string cause;
    for (size_t done = 0; done < more.size() && cause.empty();) {
        const ssize_t written = write(descriptor, more.data(), more.size() - done);
        if (written > 0)
            done += static_cast<size_t>(written);
        else if (errno != EINTR)
            cause = std::strerror(errno);
    }
    if (close(descriptor) != 0 && cause.empty())
        cause = std::strerror(errno);
    return cause;
}

} // namespace Vs::Translate
