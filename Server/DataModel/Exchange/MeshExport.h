#pragma once

#include "Server/DataModel/Translator.h"

#include <functional>
#include <string>

namespace Vs {
class Component;
struct LengthUnit;
} // namespace Vs

namespace Vs::Exchange {

/// What to write as triangles, and how.
struct MeshExport
{
    /// Every occurrence below it is written.
    const Component& root;
    std::wstring path;
    /// Bodies are remeshed only for a refinement other than the one they are shown with.
    TranslatorRefinement refinement;
    /// The file's unit of length, if its format has a choice.
    const LengthUnit& unit;
    /// All occurrences become one part, which keeps their colours.
    bool combine = false;
    /// For STL, which also has a binary form.
    bool asText = false;
    /// For STL, where it usually is z, and OBJ, where it usually is y; glTF prescribes it.
    UpAxis upAxis = UpAxis::Usual;
    /// Called with the progress; returns false to cancel. May be empty.
    std::function<bool(double)> watch;

    bool goOn(double fraction) const { return !watch || watch(fraction); }
};

// Each writes a new file, which replaces an old one when it is complete. Returns false with an error, or
// without one if it was cancelled.

/// STL, which has neither parts nor colours.
bool writeStl(const MeshExport& job, Status& status);
/// OBJ with one group for each occurrence, and the colours in an MTL file of the same name next to it.
bool writeObj(const MeshExport& job, Status& status);
/// glTF 2.0: the tree of the components, with a body's mesh shared by its occurrences. A `.gltf` file embeds
/// its numbers.
bool writeGltf(const MeshExport& job, bool binary, Status& status);

} // namespace Vs::Exchange
