#pragma once

#include "Server/DataModel/Native/DocumentContent.h"

#include <string>

namespace Vs::Native {

/// Reads a package that was just written from the disk and compares it with what it was written from. Throws
/// std::runtime_error if there is any difference. Needs Package::prepare in a forked child.
void readBack(const std::string& path, const PackageWriter& writer, const DocumentContent& content);

} // namespace Vs::Native
