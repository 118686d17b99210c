#pragma once

#include "Server/DataModel/Model/StoredPart.h"
#include "Server/DataModel/Native/Manifest.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vs {
class ModelFile;
}

namespace Vs::Native {

/// A native file that was read but is no document yet.
struct NativeLoad
{
    Manifest manifest;
    std::shared_ptr<const FileMapping> file;
    struct Model
    {
        std::shared_ptr<const ModelFile> model; ///< Null for an asset with nothing in it.
        StoredPart part;
    };
    std::vector<Model> models; ///< One for each of the manifest's assets.
    bool hasPicture = false;

    /// Told how far it is; returns false to give up.
    using Watch = std::function<bool(double fraction)>;

    /// Maps the file and checks everything but the exact data, the picture and the extras, of which only
    /// those are left in the manifest that are there and may be kept. Throws std::runtime_error with the
    /// cause, or Cancelled. Any thread.
    [[nodiscard]] static NativeLoad read(const std::string& path, const Watch& watch = {});
};

/// Thrown where somebody asked to give up.
struct Cancelled
{
};

} // namespace Vs::Native
