#pragma once

#include "Server/AddInMgr/AddInMgr.h"

/// The work of AddInMgr::readManifest, in a separate library: the XML parser is a tenth of a small run's
/// memory, and only the start needs it. The caller owns the manifest.
extern "C" Vs::AddInManifest* vsReadManifest(const boost::filesystem::path& root,
                                             const boost::filesystem::path& file, Vs::Status& status);
