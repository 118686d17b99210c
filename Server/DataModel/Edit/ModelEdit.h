#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/DataModel/Selection/ObjectPath.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace Vs {

// The changes of an exact model that ModelKernel::edit makes. Components are named by Component::id. A
// component in an assembly that occurs several times is changed in all of its occurrences, and a body in all
// of the body's.

/// Moves components. One inside another of them only moves along with that one.
struct MoveEdit
{
    std::vector<std::string> components;
    GkMatrix3d motion; ///< In the asset's coordinates, without scale or mirror.
};

/// Adds occurrences beside components: one of each for every motion. A copy shows the same body, so that both
/// show a change of the body; for an assembly at the top of the tree, its parts do.
struct CopyEdit
{
    std::vector<std::string> components;
    std::vector<GkMatrix3d> motions; ///< From the component to each copy; otherwise as MoveEdit's.
};

/// Puts the mirror image of each component beside it, as a separate part. Parts that occur several times have
/// one image.
struct MirrorEdit
{
    std::vector<std::string> components;
    GkPoint3d point; ///< On the mirror.
    GkVector3d normal;
    bool keep = true; ///< The components that are mirrored; otherwise their images replace them.
};

/// Moves components into an assembly, wherever that occurs, without moving them in the model; if the parent
/// is a part, their bodies are joined to its own.
struct NestEdit
{
    std::vector<std::string> components; ///< At the top of the tree.
    std::string parent;
};

/// Joins bodies to another one, subtracts them from it, or keeps only what it has in common with all of them.
struct CombineEdit
{
    enum class Kind { Join, Subtract, Intersect };
    Kind kind = Kind::Join;
    std::string target;             ///< Keeps its id, name and colour.
    std::vector<std::string> tools; ///< An assembly stands for everything in it.
    bool keepTools = false;         ///< Otherwise they are removed.
};

/// Rounds edges, or chamfers them at 45 degrees to flat faces.
struct BlendEdit
{
    enum class Kind { Fillet, Chamfer };
    Kind kind = Kind::Fillet;
    std::vector<ObjectPath> edges;
    double size = 0; ///< In mm: the radius, or the distance from the edge.
};

/// Sets the colours of individual components, bodies and faces, or removes them.
struct ColourEdit
{
    std::vector<ObjectPath> objects;
    std::optional<Colour> colour;
};

using ModelEdit = std::variant<MoveEdit, CopyEdit, MirrorEdit, CombineEdit, BlendEdit, ColourEdit, NestEdit>;

/// Why a change can't be made.
enum class EditFault {
    NoBody,      ///< The component is an assembly, where a body is needed.
    NoSolid,     ///< The body doesn't enclose a volume.
    Triangles,   ///< The body is made only of triangles.
    OwnTool,     ///< A body was to be combined with itself.
    NothingLeft, ///< The tools take all of it away.
    Apart,       ///< The bodies have nothing in common.
    NoSuchPart,  ///< The body has no such face or edge.
    FreeEdge,    ///< The edge doesn't lie between two faces.
    SmoothEdge,  ///< The faces at the edge meet smoothly.
    TooLarge,    ///< There is no room for so large a radius or distance.
    Invalid,     ///< The kernel's result is not a valid body.
    Refused,     ///< The kernel gave up.
    Crashed,     ///< The kernel crashed.
    TooLong,     ///< The kernel didn't finish.
    Cancelled,   ///< The user cancelled it.
    OwnParent,   ///< An assembly was to be put into itself.
};

/// Thrown by ModelKernel::edit.
class EditError : public std::runtime_error
{
public:
    /// `subject` is the name of the component concerned.
    EditError(EditFault fault, std::wstring subject)
        : std::runtime_error("the change can't be made"), m_fault(fault), m_subject(std::move(subject))
    {
    }
    EditFault fault() const { return m_fault; }
    const std::wstring& subject() const { return m_subject; }

private:
    EditFault m_fault;
    std::wstring m_subject;
};

} // namespace Vs
