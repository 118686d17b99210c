#pragma once

#include "Server/Base/ResourceMgr.h"
#include "UI/Commands/ResourcesTable.h"

namespace Vu::Commands {

/// The add-in's one store of files that it shows or reads: icons, mouse pointers, pictures, layouts, the
/// style sheet.
///
/// Code never builds a path of a resource; it calls an accessor. Every accessor is a public static function
/// without arguments that returns the resource of one row of ResourcesTable.h:
///
///     Vs::ImageSetResource* Fit();           // a row of QUILLET_IMAGE_SETS
///     Vs::CursorResource* PanCursor();       // of QUILLET_CURSORS
///     Vs::ImageResource* searchResultsTest();// of QUILLET_IMAGES
///     Vs::Resource* ToolbarXml();            // of QUILLET_FILES
///
/// The resources belong to this store and live until the process ends; callers neither free nor change them.
/// Two calls of one accessor return the same pointer. Nothing is read from disk by an accessor: a file that
/// is missing shows when the resource is used, and its localPath() names where it was looked for.
///
/// Main thread only.
class Resources : public Vs::ResourceMgr
{
public:
#define QUILLET_DECLARE_SET(name, path) static Vs::ImageSetResource* name();
#define QUILLET_DECLARE_CURSOR(name, path, x, y) static Vs::CursorResource* name();
#define QUILLET_DECLARE_IMAGE(name, path) static Vs::ImageResource* name();
#define QUILLET_DECLARE_FILE(name, path) static Vs::Resource* name();
    QUILLET_IMAGE_SETS(QUILLET_DECLARE_SET)
    QUILLET_CURSORS(QUILLET_DECLARE_CURSOR)
    QUILLET_IMAGES(QUILLET_DECLARE_IMAGE)
    QUILLET_FILES(QUILLET_DECLARE_FILE)
#undef QUILLET_DECLARE_SET
#undef QUILLET_DECLARE_CURSOR
#undef QUILLET_DECLARE_IMAGE
#undef QUILLET_DECLARE_FILE

private:
    Resources();
    static Resources* get();
};

} // namespace Vu::Commands
