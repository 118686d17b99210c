#pragma once

#include <QString>

#include <string>

class QWidget;

namespace Vu::Commands {

/// Of identifiers of folders on the drive: "/parts" of "/parts/new", "/" of "/parts".
[[nodiscard]] std::string folderAbove(const std::string& folder);
[[nodiscard]] std::string inFolder(const std::string& folder, const QString& name);
/// Why a name can't be that of a file or folder on a drive; empty if it can.
[[nodiscard]] QString faultOfName(const QString& name);
/// Asks for the name of a new folder until it is valid; empty if the user cancelled.
[[nodiscard]] QString askFolderName(QWidget* parent);

} // namespace Vu::Commands
