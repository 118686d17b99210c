#pragma once

#include "Server/Translate/Reading.h"
#include "Server/Translate/Shares/ShareReaders.h"
#include "Server/Translate/StepSession.h"

#include <string>

namespace Vs::Translate::Shares {

/// Loads what the shares left of a file, and binds what their readers hand back to its entities, so that a
/// transfer finds it there. Tells the reading what is meshed and what was left out. False if the file has to
/// be read as a whole; then nothing of the reading has changed.
bool readByShares(ShareReaders& readers, StepSession& session, const std::string& path, Reading& reading,
                  Reporter& reporter);

} // namespace Vs::Translate::Shares
