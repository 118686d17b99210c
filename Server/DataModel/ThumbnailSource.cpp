#include "Server/DataModel/ThumbnailSource.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/Native/Package.h"

#include <exception>

namespace Vs {

namespace {

ThumbnailSource::Picture& installed()
{
    static ThumbnailSource::Picture picture;
    return picture;
}

} // namespace

void ThumbnailSource::install(Picture picture)
{
    assertMainThread();
    installed() = std::move(picture);
}

std::string ThumbnailSource::png(const Document& document)
{
    if (!installed())
        return {};
    try {
        std::string bytes = installed()(document);
        return Native::isPicture(bytes) ? bytes : std::string();
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace Vs
