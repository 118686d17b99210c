#pragma once

#include "Server/Translate/Shares/SharePlan.h"
#include "Server/Translate/Shares/ShareResult.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Vs::Translate::Shares {

/// What one reader does.
struct ShareJob
{
    /// What makes one result.
    struct Part
    {
        std::vector<SharedRepresentation> representations;
        std::vector<uint32_t> wanted; ///< Numbers of entities whose shapes are asked for besides.
    };
    std::string text; ///< A STEP file.
    std::vector<Part> parts;
    std::vector<std::string> warnings; ///< Of what was left out of the text.
};

/// The file is damaged, where nothing had been left out of it before.
class Unsound : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Makes the kernel's tables that all files need, so that the processes that are forked off later find them.
void warmUp();

/// Reads, transfers and meshes a share. `report` is told how much is done, from 0 to 1. Throws Unsound if the
/// text has to be sound and isn't, and whatever the kernel throws. One result a part.
std::vector<ShareResult> readShare(const ShareJob& job, bool mustBeSound,
                                   const std::function<void(double)>& report);

} // namespace Vs::Translate::Shares
