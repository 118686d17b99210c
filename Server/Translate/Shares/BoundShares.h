#pragma once

#include "Server/Translate/Reading.h"
#include "Server/Translate/Shares/ShareReaders.h"
#include "Server/Translate/StepSession.h"

#include <string>

namespace Vs::Translate::Shares {

/// Loads what the shares left of a file, and binds the readers' results to its entities, so that a transfer
/// finds them there. Tells the reading what is meshed and what was left out. False if the file must be read
/// as a whole; the reading is then unchanged.
bool readByShares(ShareReaders& readers, StepSession& session, const std::string& path, Reading& reading,
                  Reporter& reporter);

} // namespace Vs::Translate::Shares
