#pragma once

#include "Server/DataModel/IDocMgmtHandler.h"

namespace Vu::Commands {

/// Asks "Save changes?" for each dirty document that is about to close. One instance lives as long as the
/// library.
class DocMgmtCmdsHandler : public Vs::IDocMgmtHandler
{
public:
    Vs::EDocMgmtOpCode onClosingDirtyDocuments(const Documents& documents) override;
};

} // namespace Vu::Commands
