#pragma once

#include "Server/DataModel/Native/FileCheck.h"
#include "Server/DataModel/Native/NativeLoad.h"

#include <memory>
#include <string>
#include <vector>

namespace Vs {

/// How a document relates to its native file.
struct DocumentFile
{
    FileIdentity identity; ///< As it was when it was read or written; zero if it is unknown.
    /// What a recovered document was being worked on in, as it was then: becomes `identity` if it is given
    /// that path.
    std::wstring recoveredPath;
    FileIdentity recoveredIdentity;
    bool migrated = false;                   ///< It has an older layout than the one that is written.
    bool editingAllowed = false;             ///< The user agreed to change a document that can't be written.
    std::shared_ptr<const FileMapping> file; ///< Where its old picture and its extras are.
    std::vector<Native::Manifest::Extra> extras;
    std::unique_ptr<Native::FileCheck> check; ///< Of the opened file; null for a new document.
};

} // namespace Vs
