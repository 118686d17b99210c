#pragma once

#include <boost/filesystem/path.hpp>

#include <string>

/// What each start and end of the application has, whoever starts it.
namespace Quillet {

/// Prints a message of the program itself.
void complain(const std::string& message);

/// Puts all that the run keeps below this folder, unless it is empty. A folder that cannot be there is found
/// out before anything wants to write into it; returns false then, and has told why. That it cannot be
/// written is told when something is to be kept: many runs keep nothing.
bool takeProfile(const boost::filesystem::path& folder);

/// Before any text is asked for. A run without a window speaks the language of its environment, as other
/// programs in scripts do.
void takeLanguage(bool headless);

/// Loads the add-ins and checks what they brought. An add-in that cannot be loaded is told and missed, and so
/// is what is wrong with an add-in's own files; `whole` then is false. Names that are taken twice would leave
/// it to chance what a line runs, so that they stop the start: false, and told.
bool loadAddIns(bool& whole);

/// However the run came to its end: what is left to the statics has nobody any more to tell.
void end();

} // namespace Quillet
