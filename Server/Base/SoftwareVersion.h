#pragma once

#include <string>

/// Versions of the program. As a number a version is `major * 65536 + minor * 256 + patch`; 0 is no version.
namespace Vs::SoftwareVersion {

/// "major.minor.patch" of a number.
std::string versionString(unsigned version);

/// The running program's version as text.
std::string currentSoftwareVersion();
/// The running program's version as a number; what a saved document keeps.
unsigned currentVersionNumber();

/// The number of a version's text; 0 if the text is no version.
unsigned versionInfo(const std::string& version);

} // namespace Vs::SoftwareVersion
