#pragma once

#include "Server/Translate/Salvage/IgesRecords.h"

#include <string>

namespace Vs::Translate::Salvage {

/// What an IGES file says of itself as a whole.
struct IgesGlobal
{
    explicit IgesGlobal(const IgesRecords& records);

    std::string text; ///< A sound section, with the delimiters "," and ";".
    bool isSound = true;
    bool lostUnit = false; ///< Millimetres are assumed.
};

} // namespace Vs::Translate::Salvage
