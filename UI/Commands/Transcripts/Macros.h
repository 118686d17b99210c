#pragma once

#include "Server/Base/TranscriptParameters.h"

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

namespace Vu {
class CommandDefinition;
}

/// The user's macros: recordings in a folder of their own, beside the scripts. The user is asked for their
/// placeholders of the form ${NAME:-VALUE}. Each is played by its own command, "Macro.NAME", which can have a
/// shortcut. Main thread only.
namespace Vu::Commands::Macros {

/// With `create`, created if missing.
boost::filesystem::path folder(bool create);
/// In alphabetical order, as the files are now.
[[nodiscard]] std::vector<std::wstring> names();
[[nodiscard]] boost::filesystem::path fileOf(const std::wstring& name);
/// The name of the macro in that file; empty if it isn't one.
[[nodiscard]] std::wstring nameOf(const boost::filesystem::path& file);
/// Names are file names, so some characters aren't allowed. Returns a sentence for the user; empty if the
/// name is valid.
[[nodiscard]] std::wstring whyNoName(const std::wstring& name);

/// The macro's placeholders, each once, except the one that every run has (`out`).
[[nodiscard]] std::vector<Vs::NamedParameter> parametersOf(const std::wstring& name);

/// The command that plays it.
CommandDefinition* command(const std::wstring& name);
/// Creates the commands of all existing macros, so that their shortcuts are known.
void defineAll();

/// Plays it to its end; a recording keeps it as one line.
void play(const std::wstring& name, const Vs::TranscriptParameters& parameters);

} // namespace Vu::Commands::Macros
