#pragma once

#include "Server/Base/TranscriptParameters.h"

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

namespace Vu {
class CommandDefinition;
}

/// The user's macros: recordings in a folder of their own, beside the scripts. What they have of the form
/// ${NAME:-VALUE} a person is asked for. Each is played by a command of its own, "Macro.NAME", which can have
/// a key. Main thread only.
namespace Vu::Commands::Macros {

/// With `create`, made if it isn't there.
boost::filesystem::path folder(bool create);
/// In alphabetical order, as files now are.
[[nodiscard]] std::vector<std::wstring> names();
[[nodiscard]] boost::filesystem::path fileOf(const std::wstring& name);
/// The name of a macro with that file; empty if it isn't one.
[[nodiscard]] std::wstring nameOf(const boost::filesystem::path& file);
/// A name is that of a file, so that some letters can't be in it. A sentence for the user; empty if all is
/// well.
[[nodiscard]] std::wstring whyNoName(const std::wstring& name);

/// What the macro asks for, each once, but for what every run has (`out`).
[[nodiscard]] std::vector<Vs::NamedParameter> parametersOf(const std::wstring& name);

/// The command that plays it.
CommandDefinition* command(const std::wstring& name);
/// Makes the commands of all macros that are there, so that their keys are known.
void defineAll();

/// Plays it to its end; a recording takes it down as one line.
void play(const std::wstring& name, const Vs::TranscriptParameters& parameters);

} // namespace Vu::Commands::Macros
