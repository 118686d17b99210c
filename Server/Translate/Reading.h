#pragma once

#include "Server/DataModel/Kernel/XdeModel.h"
#include "Server/Translate/EarlyMeshing.h"
#include "Server/Translate/Reporter.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace Vs::Translate {

/// Why a file can't be read, as a clause that follows its name: "holds no surfaces or solids".
class Unreadable : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

class Helpers;

/// How to read a file.
struct ReadingOptions
{
    bool annotations = true;
    bool salvage = false;  ///< It is damaged: only its sound content, where the format can tell.
    bool facewise = false; ///< And without the faces on which the kernel dies.
    bool isStrict = false; ///< It is refused if it is damaged.
    /// Processes that read beside this one; null for none. They were started before the wall was raised.
    std::shared_ptr<Helpers> helpers;
};

/// A file that was read: its model, and what is still to be done.
struct Reading
{
    std::unique_ptr<Kernel::XdeModel> model;
    std::vector<std::string> warnings;
    /// What to report if nothing turns out to be displayable.
    std::string ifEmpty = "holds no surfaces or solids that can be read";
    /// What can run beside the meshing, such as reading annotations, and adds its warnings; may be empty.
    std::function<void(std::vector<std::string>& warnings)> later;
    /// Started to mesh the shapes while the reader was still at work; may be null.
    std::unique_ptr<EarlyMeshing> early;
    /// Tells whether a shape came with its triangles; may be empty.
    std::function<bool(const TopoDS_Shape&)> isMeshed;
    /// Meshes that came with the file, in the order of the tree's bodies; empty if they are still to be made.
    std::vector<std::shared_ptr<const BodyMesh>> meshes;
    /// The writer of the model, if that is known already.
    std::string stored;
};

/// What helpers may use.
struct Help
{
    uint64_t memory = 0;   ///< Bytes.
    std::string pieces;    ///< A folder for what they may reuse; empty for none.
    bool facewise = false; ///< To find the faces on which the kernel dies.
};

/// The helpers that a family of formats starts.
class Helpers
{
public:
    virtual ~Helpers() = default;
};

/// How deep assemblies may be nested: less than what exhausts the stack where the kernel's own functions
/// recurse for each level.
constexpr size_t kMostLevels = 2000;
/// Throws Unreadable if there are more levels, or occurrences of parts, than can be shown.
void checkLimits(size_t levels, uint64_t parts);

/// The file's name without folder and suffix: the name of anything that has none.
std::string stemOf(const std::string& path);

} // namespace Vs::Translate
