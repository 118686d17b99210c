#pragma once

#include <boost/filesystem/path.hpp>

#include <string>

/// The start and end shared by every form of the application.
namespace Quillet {

/// Prints a message of the program itself.
void complain(const std::string& message);

/// Puts everything that the run stores below this folder, unless it is empty. A folder that can't exist is
/// detected before anything wants to write to it; then returns false after reporting why. That it isn't
/// writable is only reported when something is to be stored: many runs store nothing.
bool takeProfile(const boost::filesystem::path& folder);

/// Must come before any text is needed. A run without a window speaks the language of its environment, as
/// other programs in scripts do.
void takeLanguage(bool headless);

/// Loads the add-ins and checks what they registered. An add-in that can't be loaded is reported and left
/// out, and errors in an add-in's own files are reported as well; `whole` is then false. Duplicate names
/// would make it arbitrary what a line runs, so they stop the start: it reports them and returns false.
bool loadAddIns(bool& whole);

/// However the run ended: by the time statics are destroyed, nobody is left to notify.
void end();

} // namespace Quillet
