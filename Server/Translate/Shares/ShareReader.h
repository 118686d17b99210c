#pragma once

#include "Server/Translate/Shares/SharePlan.h"
#include "Server/Translate/Shares/ShareResult.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Vs::Translate::Shares {

/// The job of one reader.
struct ShareJob
{
    /// What makes one result.
    struct Part
    {
        std::vector<SharedRepresentation> representations;
        std::vector<uint32_t> wanted; ///< Numbers of entities whose shapes are also requested.
    };
    std::string text; ///< A STEP file.
    std::vector<Part> parts;
    std::vector<std::string> warnings; ///< About what was left out of the text.
    bool isAlone = false;              ///< Processors would be idle, were it read on one alone.
};

/// The file is damaged, though nothing had been left out of it before.
class Unsound : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Creates the kernel's tables that all files need, so that processes forked later inherit them.
void warmUp();

/// Reads, transfers and meshes a share. `report` is called with the progress, from 0 to 1. Throws Unsound if
/// the text must be sound and isn't, and whatever the kernel throws. One result per part.
std::vector<ShareResult> readShare(const ShareJob& job, bool mustBeSound,
                                   const std::function<void(double)>& report);

} // namespace Vs::Translate::Shares
