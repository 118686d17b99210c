#pragma once

#include "Server/Body/BodyProperties.h"
#include "Server/DataModel/Edit/ModelEdit.h"
#include "Server/DataModel/Measure/PartTypes.h"
#include "Server/DataModel/Model/PartSuccessors.h"
#include "Server/DataModel/Model/PartTree.h"
#include "Server/DataModel/Model/ShapeMeasure.h"
#include "Server/DataModel/Translator.h"

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Vs {

/// What one change did to a model, so that it can be undone. Its content is the kernel's own.
class ModelChange
{
public:
    virtual ~ModelChange() = default;
};

/// The exact data of one asset, with its transactions. The geometry kernel behind it is a separate library,
/// loaded when the first of these is created: a run that only shows and exports what it read before never
/// needs it. Operations throw std::runtime_error with a message for the user. One thread at a time, except
/// where noted.
class ModelKernel
{
public:
    enum class Primitive { Box, Cylinder, Sphere, Cone, Torus };

    /// An empty model.
    static std::unique_ptr<ModelKernel> create();
    /// The model that `write` wrote. The bytes are trusted: see Exchange::ExactData for those from elsewhere.
    static std::unique_ptr<ModelKernel> read(std::string_view bytes);

    /// Loads the library, for callers that have something else to do meanwhile.
    static void load();

    virtual ~ModelKernel() = default;

    virtual void write(std::ostream& stream) = 0;
    /// Colours alone say from then on what parts look like. For data of a file without finishes (ModelFile),
    /// before anything else is asked.
    virtual void forgetMaterials() = 0;

    virtual PartTree tree() = 0;
    /// PartTree::Body::revision of a body.
    virtual uint64_t revision(const std::string& entry) = 0;
    /// What the parts of a body of one revision became in the shape of another revision, whichever of the two
    /// came first; null if that isn't known.
    virtual std::shared_ptr<const PartSuccessors> successors(uint64_t before, uint64_t after) = 0;
    /// What committed or reverted changes have touched since the last call of this or of `tree`.
    virtual std::vector<TouchedPlace> takeTouched() = 0;
    /// The parts of the tree at these places, in their order, as the roots of one tree; the id of each is its
    /// place. Empty places are skipped. `deep` tells whether what is below is wanted as well.
    virtual PartTree branches(const std::vector<std::string>& places, bool deep) = 0;
    /// The mesh of a body, made if it doesn't exist yet. While that takes long, `goOn` is called from time to
    /// time with the fraction done, and cancels by returning false; it may be empty.
    virtual std::shared_ptr<const BodyMesh> mesh(const std::string& entry,
                                                 const TranslatorRefinement& refinement,
                                                 const std::function<bool(double)>& goOn) = 0;
    /// Makes a finer mesh of a body from a copy of its shape, without the model: on any thread, while others
    /// use it. `goOn` as in `mesh`.
    using Mesher = std::function<std::shared_ptr<const BodyMesh>(const std::function<bool(double)>& goOn)>;
    /// The mesh of the usual refinement, with its triangles split up to `level` times where they deviate by
    /// more than that, in mm.
    virtual Mesher finerMesher(const std::string& entry, double deviation, int level) = 0;
    /// The properties selected by `what`, and the counts.
    virtual BodyProperties properties(const std::string& entry, BodyMeasure what) = 0;
    /// Measures a face, an edge or a vertex in the body's own coordinates. Asking for any one of the
    /// positions gives the whole position.
    virtual ShapeAnswer measurePart(const MeasuredShape& part, EMeasureType type) = 0;
    /// The distance or the angle between two things, each one shape or, for a distance, several.
    virtual ShapeAnswer measurePair(const std::vector<MeasuredShape>& first,
                                    const std::vector<MeasuredShape>& second, EMeasureType type) = 0;
    /// The edges around the outside of a face (ObjectPath::index).
    virtual std::vector<uint32_t> loop(const MeasuredShape& face) = 0;
    /// The parts of a body and how they meet.
    virtual BodyParts parts(const std::string& entry) = 0;
    /// For all faces or all edges of a body.
    virtual std::vector<PartExtent> extents(const std::string& entry, ObjectPath::Leaf leaf) = 0;

    /// A plain box, cylinder or sphere, with placement and sizes as addPrimitive takes them.
    struct Recognised
    {
        Primitive kind;
        GkMatrix3d placement;
        double sizes[3];
    };
    /// Determined from a body's exact shape, whatever made it; nothing if it isn't a primitive.
    virtual std::optional<Recognised> recognise(const std::string& entry) = 0;

    /// Adds a part at the top of the tree, within a transaction. Sizes: dx, dy, dz; radius, height; radius;
    /// base radius, top radius, height; ring radius, tube radius.
    /// Returns the new component's id.
    virtual std::string addPrimitive(Primitive kind, const double (&sizes)[3], const GkMatrix3d& placement,
                                     const std::wstring& name, const std::optional<Colour>& colour) = 0;
    /// Adds everything at the top of another model's tree to this one's, within a transaction.
    virtual void insert(ModelKernel& other) = 0;
    /// Puts copies of components of another model, or of this one, at the top of this one's tree, at their
    /// place in the other's coordinates, within a transaction. Within a model the copies show the same
    /// bodies. A component inside another one of them is copied only with that one. Returns the copies' ids.
    virtual std::vector<std::string> paste(ModelKernel& source,
                                           const std::vector<std::string>& components) = 0;

    /// Renames a component (Component::id), within a transaction; the new name shows wherever the assembly
    /// that holds it occurs.
    virtual void rename(const std::string& component, const std::wstring& name) = 0;
    /// Removes components with everything in them, and the shapes that nothing shows any more, within a
    /// transaction. Those that are gone, or are removed with another one, are skipped.
    virtual void remove(const std::vector<std::string>& components) = 0;

    /// Changes the exact model, within a transaction, and returns the ids of the components that it added. A
    /// change that fails may be half done: the transaction must then be aborted.
    virtual std::vector<std::string> edit(const ModelEdit& edit) = 0;
    /// Shows or hides components, each wherever the assembly that holds it occurs, within a transaction.
    /// Other occurrences of the same part are unaffected.
    virtual void setVisible(const std::vector<std::string>& components, bool visible) = 0;

    virtual void begin() = 0;
    /// Ends what was begun. Null if nothing was changed.
    virtual std::unique_ptr<ModelChange> commit() = 0;
    virtual void abort() = 0;
    /// Undoes a change, and returns the one that redoes it. Only the last change not undone yet can be
    /// undone, and only while no transaction is open.
    virtual std::unique_ptr<ModelChange> revert(const ModelChange& change) = 0;

    static constexpr uint32_t kNoSolid = ~uint32_t(0);
    /// For each face of a body, in their order, the solid that it belongs to, or kNoSolid.
    virtual std::vector<uint32_t> solidsOfFaces(const std::string& entry) = 0;
};

} // namespace Vs
