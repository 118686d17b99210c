#pragma once

#include "Server/DataModel/Native/DocumentContent.h"

#include <string>

namespace Vs::Native {

/// Reads a package that was just written back from the disk and compares it with its source. Throws
/// std::runtime_error if they differ. Needs Package::prepare in a forked child.
void readBack(const std::string& path, const PackageWriter& writer, const DocumentContent& content);

} // namespace Vs::Native
