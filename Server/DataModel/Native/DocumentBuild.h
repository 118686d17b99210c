#pragma once

#include "Server/Base/Status.h"
#include "Server/DataModel/Native/NativeLoad.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace Vs {

class Asset;
class Document;

/// Makes documents from native files.
class DocumentBuild
{
public:
    /// Reads a native file. Returns nothing, with one error that names the file and the cause, if it can't be
    /// read or the watch cancelled. Any thread.
    static std::optional<Native::NativeLoad> read(const std::wstring& path,
                                                  const Native::NativeLoad::Watch& watch, Status& status);

    /// Makes a document from what was read. Null, with the reason, if no add-in knows its type. Main thread.
    static Document* build(Native::NativeLoad load, const std::wstring& path, Status& status);

private:
    using Assets = std::map<boost::uuids::uuid, Asset*>; ///< By their identifiers in the file.
    using Identifiers = std::function<boost::uuids::uuid(const boost::uuids::uuid&)>;

    /// `own` tells the identifiers that the assets get for those in the file.
    static Assets addAssets(Document& document, Native::NativeLoad& load, const Identifiers& own);
};

} // namespace Vs
