#pragma once

#include "Server/Base/Object.h"

#include <string>

namespace Vs::Services {

/// Lets an edition of the application impose its own ways. The ordinary edition imposes nothing.
class ApplicationEditionService : public Implements<ApplicationEditionService>
{
public:
    /// The filter of the dialog that opens files; empty for the usual one.
    virtual std::wstring defaultOpenFileFilterStr() const { return {}; }
};

} // namespace Vs::Services
