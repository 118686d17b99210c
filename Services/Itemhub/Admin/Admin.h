#pragma once

#include <QStringList>

namespace Itemhub::Admin {

/// Runs an administrator's command. @param words the configuration file, then the command
/// @returns the program's exit code @throws std::exception that says what failed
[[nodiscard]] int run(const QStringList& words);

} // namespace Itemhub::Admin
