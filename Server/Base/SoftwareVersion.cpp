#include "Server/Base/SoftwareVersion.h"

#include <charconv>
#include <utility>

namespace Vs::SoftwareVersion {

namespace {

std::string& revision()
{
    static std::string& text = *new std::string("unknown");
    return text;
}

} // namespace

std::string versionString(unsigned version)
{
    return std::to_string(version >> 16) + '.' + std::to_string((version >> 8) & 0xFF) + '.' +
           std::to_string(version & 0xFF);
}

std::string currentSoftwareVersion()
{
    return QUILLET_VERSION;
}

unsigned currentVersionNumber()
{
    return versionInfo(currentSoftwareVersion());
}

std::string describeCurrent()
{
    return currentSoftwareVersion() + " (" + revision() + ')';
}

void currentRevision(std::string text)
{
    revision() = std::move(text);
}

unsigned versionInfo(const std::string& version)
{
    constexpr unsigned kLargest[] = {0xFFFF, 0xFF, 0xFF};
    unsigned number = 0;
    const char* at = version.data();
    const char* const end = at + version.size();
    for (int i = 0; i < 3; ++i) {
        unsigned part = 0;
        if (i > 0 && (at == end || *at++ != '.'))
            return 0;
        const auto [stop, error] = std::from_chars(at, end, part);
        if (error != std::errc() || part > kLargest[i])
            return 0;
        number = (number << 8) | part;
        at = stop;
    }
    return at == end ? number : 0;
}

} // namespace Vs::SoftwareVersion
