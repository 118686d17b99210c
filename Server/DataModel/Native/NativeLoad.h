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

/// A native file that was read but isn't a document yet.
struct NativeLoad
{
    Manifest manifest;
    std::shared_ptr<const FileMapping> file;
    struct Model
    {
        std::shared_ptr<const ModelFile> model; ///< Null for an empty asset.
        StoredPart part;
    };
    std::vector<Model> models; ///< One for each of the manifest's assets.
    bool hasPicture = false;

    /// Called with the progress; returns false to cancel.
    using Watch = std::function<bool(double fraction)>;

    /// Maps the file and checks everything except the exact data, the picture and the extras; the manifest
    /// keeps only those extras that exist and may be kept. Throws std::runtime_error with the cause, or
    /// Cancelled. Any thread.
    [[nodiscard]] static NativeLoad read(const std::string& path, const Watch& watch = {});
};

/// Thrown where somebody cancelled.
struct Cancelled
{
};

} // namespace Vs::Native
