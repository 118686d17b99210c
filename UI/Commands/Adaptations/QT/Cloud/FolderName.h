#pragma once

#include <QString>

class QWidget;

namespace Vu::Commands {

/// Why a name can be none of a file or folder on a drive; empty if it can.
[[nodiscard]] QString faultOfName(const QString& name);
/// Asks for the name of a new folder, until it can be one; empty if the person gave up.
[[nodiscard]] QString askFolderName(QWidget* parent);

} // namespace Vu::Commands
