#pragma once

#include "Server/Body/Body.h"
#include "Server/DataModel/Model/ModelData.h"

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <tuple>
#include <vector>

namespace Vs {

/// A body of an asset's model. Its mesh is copied from the model's file, or made by the kernel, at the first
/// call.
class ModelBody : public Implements<ModelBody, Body>
{
public:
    /// `fileIndex` is the body's index in the source's file; -1 if it isn't in one.
    ModelBody(std::shared_ptr<ModelSource> source, const PartTree::Body& part, int fileIndex)
        : m_source(std::move(source)), m_part(part), m_fileIndex(fileIndex)
    {
    }

    const std::wstring& name() const override { return m_part.name; }
    Colour colour() const override { return m_part.colour; }
    std::shared_ptr<const BodyMesh> mesh() const override;

    /// Measured at the first call.
    std::optional<BodyProperties> properties(BodyMeasure what, Status& status) const override;
    bool smart(std::wstring* kind, GkMatrix3d* placement, double* size1, double* size2,
               double* size3) const override;

    const std::string& entry() const { return m_part.entry; }
    uint64_t revision() const { return m_part.revision; }
    void revision(uint64_t revision) { m_part.revision = revision; }
    /// The size of its mesh, if it has one already.
    size_t meshBytes() const;
    /// Takes over name and colour; true if either changed.
    bool update(const PartTree::Body& part);

    /// Measures a face, edge or vertex in the body's own coordinates, once. Throws std::runtime_error.
    ShapeAnswer measurePart(ObjectPath::Leaf leaf, uint32_t index, EMeasureType type) const;
    /// For all faces or all edges; cached in the body, which stands for all of its occurrences. Throws
    /// std::runtime_error.
    std::vector<PartExtent> extents(ObjectPath::Leaf leaf) const;
    /// ModelKernel::solidsOfFaces, asked once; empty if the kernel can't tell.
    const std::vector<uint32_t>& solidsOfFaces() const;
    const std::shared_ptr<ModelSource>& source() const { return m_source; }
    /// A mesh of another refinement, made for the caller alone. `goOn` as in ModelKernel::mesh. Throws
    /// std::runtime_error.
    std::shared_ptr<const BodyMesh> meshFor(const TranslatorRefinement& refinement,
                                            const std::function<bool(double)>& goOn = {}) const;

private:
    std::shared_ptr<const BodyMesh> madeMesh() const;
    std::shared_ptr<const BodyMesh> meshOfFile() const;
    /// The known answer, or else the kernel's, which is then cached.
    template <class Known, class Key, class Ask>
    auto keptOr(Known& known, const Key& key, Ask&& ask) const;

    std::shared_ptr<ModelSource> m_source;
    PartTree::Body m_part;
    int m_fileIndex;
    mutable std::mutex m_mutex;
    mutable std::shared_ptr<const BodyMesh> m_mesh;
    mutable std::map<BodyMeasure, BodyProperties> m_properties;
    mutable std::optional<std::vector<uint32_t>> m_solidsOfFaces;
    mutable std::map<std::tuple<ObjectPath::Leaf, uint32_t, EMeasureType>, ShapeAnswer> m_answers;
    mutable std::map<ObjectPath::Leaf, std::vector<PartExtent>> m_extents;
};

} // namespace Vs
