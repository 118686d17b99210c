#include "UI/Commands/Resources.h"

#include "Server/Base/PathInfo.h"

namespace Vu::Commands {

namespace {

// Asked for the English folder where the language has none, so that a language overrides only what it must.
const boost::filesystem::path& baseDirectory()
{
    static const boost::filesystem::path directory =
        Vs::PathInfo::localizationDirectory(true) / "UI" / "Commands" / "Resources";
    return directory;
}

} // namespace

Resources::Resources() : Vs::ResourceMgr(baseDirectory()) {}

Resources* Resources::get()
{
    static Resources resources;
    return &resources;
}

#define QUILLET_DEFINE_SET(name, path)                                                                       \
    Vs::ImageSetResource* Resources::name()                                                                  \
    {                                                                                                        \
        return get()->imageSet(L##path);                                                                     \
    }
#define QUILLET_DEFINE_CURSOR(name, path, x, y)                                                              \
    Vs::CursorResource* Resources::name()                                                                    \
    {                                                                                                        \
        return get()->cursor(L##path, x, y);                                                                 \
    }
#define QUILLET_DEFINE_IMAGE(name, path)                                                                     \
    Vs::ImageResource* Resources::name()                                                                     \
    {                                                                                                        \
        return get()->image(L##path);                                                                        \
    }
#define QUILLET_DEFINE_FILE(name, path)                                                                      \
    Vs::Resource* Resources::name()                                                                          \
    {                                                                                                        \
        return get()->resource(L##path);                                                                     \
    }

QUILLET_IMAGE_SETS(QUILLET_DEFINE_SET)
QUILLET_CURSORS(QUILLET_DEFINE_CURSOR)
QUILLET_IMAGES(QUILLET_DEFINE_IMAGE)
QUILLET_FILES(QUILLET_DEFINE_FILE)

} // namespace Vu::Commands
