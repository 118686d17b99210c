#pragma once

#include "Server/DataModel/Exchange/Format.h"
#include "Server/DataModel/Kernel/XdeModel.h"
#include "Server/Translate/EarlyMeshing.h"
#include "Server/Translate/Reporter.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace Vs::Translate {

/// Why a file can't be read, as a clause that goes after its name: "holds no surfaces or solids".
class Unreadable : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A file that was read: its model, and what is still to be done.
struct Reading
{
    std::unique_ptr<Kernel::XdeModel> model;
    std::vector<std::string> warnings;
    /// What to say if there turns out to be nothing that can be shown.
    std::string ifEmpty = "holds no surfaces or solids that can be read";
    /// What can go on beside the meshing, such as the annotations; may be empty. It may add warnings.
    std::function<void()> later;
    /// What has begun to mesh the shapes while the reader was still at work; may be null.
    std::unique_ptr<EarlyMeshing> early;
    /// Meshes that came with the file, in the order of the tree's bodies; empty where they are to be made.
    std::vector<std::shared_ptr<const BodyMesh>> meshes;
    /// What the model writes, if that is known already.
    std::string stored;
};

/// How a model is to be written.
struct Writing
{
    std::string combined;    ///< All parts become one of this name, if it has any.
    std::string unit = "mm"; ///< Of the file's lengths, where its format has any choice.
};

// `readFile` and `writeFile` are what a worker program does: each defines them for its own formats, so that
// it links, and loads at its start, nothing of the others.

/// Reads the shapes with their names, colours and structure, in millimetres. Throws Unreadable.
Reading readFile(Exchange::Format format, const std::string& path, bool annotations, Reporter& reporter);

/// Writes the model to a file. Throws Unreadable with the cause.
void writeFile(Exchange::Format format, Kernel::XdeModel& model, const Writing& writing,
               const std::string& path, Reporter& reporter);

Reading readStep(const std::string& path, bool annotations, Reporter& reporter);
Reading readIges(const std::string& path, Reporter& reporter);
Reading readBrep(const std::string& path, Reporter& reporter);
Reading readStl(const std::string& path, Reporter& reporter);
Reading readObj(const std::string& path, Reporter& reporter);
Reading readGltf(const std::string& path, bool binary, Reporter& reporter);
Reading readVrml(const std::string& path, Reporter& reporter);

void writeStep(Kernel::XdeModel& model, const Writing& writing, const std::string& path, Reporter& reporter);
void writeIges(Kernel::XdeModel& model, const Writing& writing, const std::string& path, Reporter& reporter);
void writeBrep(Kernel::XdeModel& model, const std::string& path);

/// The unit of the file's lengths as the kernel's writers of exact formats call it.
std::string unitWord(const Writing& writing);

/// Puts one part that has all others' shapes and colours, in their places, in place of the model's tree.
void combineParts(Kernel::XdeModel& model, const std::string& name);

/// Throws if a face has triangles but no surface: the exact formats have no place for such, and the kernel
/// dies of it.
void refuseMeshes(Kernel::XdeModel& model);

/// The file's name without folder and suffix: the name of what has none.
std::string stemOf(const std::string& path);

} // namespace Vs::Translate
