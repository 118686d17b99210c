#pragma once

#include "Server/AddInMgr/AddInMgr.h"

/// What AddInMgr::readManifest does, in a library of its own: the XML parser is a tenth of a small run's
/// memory, and only the start needs it. The caller owns the manifest.
extern "C" Vs::AddInManifest* vsReadManifest(const boost::filesystem::path& root,
                                             const boost::filesystem::path& file, Vs::Status& status);
