#pragma once

#include <string>

/// Versions of the program. As a number a version is `major * 65536 + minor * 256 + patch`; 0 means no
/// version.
namespace Vs::SoftwareVersion {

/// "major.minor.patch" of a number.
[[nodiscard]] std::string versionString(unsigned version);

/// The running program's version as text.
[[nodiscard]] std::string currentSoftwareVersion();
/// The running program's version as a number; what a saved document keeps.
[[nodiscard]] unsigned currentVersionNumber();

/// The running program's version for people, with the commit that it was built from: "0.1.0 (abcdef123456)".
std::string describeCurrent();
/// Sets which commit that is, or what to say instead. The program's main does it once, before anybody asks:
/// it alone is linked again for every commit.
void currentRevision(std::string revision);

/// The number of a version's text; 0 if the text is not a version.
[[nodiscard]] unsigned versionInfo(const std::string& version);

} // namespace Vs::SoftwareVersion
