#pragma once

#include "Server/DataModel/Kernel/BodyMesher.h"
#include "Server/DataModel/Kernel/MeasuredPairs.h"
#include "Server/DataModel/Kernel/XdeTransaction.h"
#include "Server/DataModel/Model/ModelKernel.h"

#include <TDocStd_Document.hxx>
#include <TopoDS_Shape.hxx>

#include <map>
#include <memory>
#include <string_view>

namespace Vs::Kernel {

class PlacedAt;
struct ShapeColours;
class SubShapes;

/// An asset's model as an XDE document: labels of shapes with names, colours and placements.
class XdeModel : public ModelKernel
{
public:
    XdeModel();
    explicit XdeModel(std::string_view bytes);
    ~XdeModel() override;

    const Handle(TDocStd_Document) & document() const { return m_document; }

    void write(std::ostream& stream) override;
    void forgetMaterials() override;
    PartTree tree() override;
    uint64_t revision(const std::string& entry) override;
    std::shared_ptr<const PartSuccessors> successors(uint64_t before, uint64_t after) override;
    std::vector<TouchedPlace> takeTouched() override;
    PartTree branches(const std::vector<std::string>& places, bool deep) override;
    std::shared_ptr<const BodyMesh> mesh(const std::string& entry, const TranslatorRefinement& refinement,
                                         const std::function<bool(double)>& goOn) override;
    Mesher finerMesher(const std::string& entry, double deviation, int level) override;
    BodyProperties properties(const std::string& entry, BodyMeasure what) override;
    ShapeAnswer measurePart(const MeasuredShape& part, EMeasureType type) override;
    ShapeAnswer measurePair(const std::vector<MeasuredShape>& first, const std::vector<MeasuredShape>& second,
                            EMeasureType type) override;
    std::vector<uint32_t> solidsOfFaces(const std::string& entry) override;
    std::vector<uint32_t> loop(const MeasuredShape& face) override;
    BodyParts parts(const std::string& entry) override;
    std::vector<PartExtent> extents(const std::string& entry, ObjectPath::Leaf leaf) override;
    std::optional<Recognised> recognise(const std::string& entry) override;
    std::string addPrimitive(Primitive kind, const double (&sizes)[3], const GkMatrix3d& placement,
                             const std::wstring& name, const std::optional<Colour>& colour) override;
    void insert(ModelKernel& other) override;
    std::vector<std::string> paste(ModelKernel& source, const std::vector<std::string>& components) override;
    void rename(const std::string& component, const std::wstring& name) override;
    void remove(const std::vector<std::string>& components) override;
    std::vector<std::string> edit(const ModelEdit& edit) override;
    void setVisible(const std::vector<std::string>& components, bool visible) override;
    void begin() override;
    std::unique_ptr<ModelChange> commit() override;
    void abort() override;
    std::unique_ptr<ModelChange> revert(const ModelChange& change) override;

protected:
    XdeTransaction& transaction() { return m_transaction; }
    virtual BodyProperties measureBody(const TopoDS_Shape& body, BodyMeasure what);
    /// Computes a distance that isn't known yet.
    virtual ShapeAnswer distance(const TopoDS_Shape& first, const TopoDS_Shape& second);
    /// How meshes are made; see `mesh`.
    virtual MeshRunner* meshRunner() const;

private:
    const SubShapes& subShapes(const std::string& entry);
    /// Null if it is missing.
    TopoDS_Shape placed(const std::vector<MeasuredShape>& shapes, PlacedAt& at);

    ShapeAnswer findPair(const std::vector<MeasuredShape>& first, const std::vector<MeasuredShape>& second,
                         EMeasureType type);
    /// The shapes of the bodies; replaced when the bodies change.
    std::vector<TopoDS_Shape> bodiesOf(const std::vector<MeasuredShape>& shapes);

    Handle(TDocStd_Document) m_document;
    XdeTransaction m_transaction;
    std::map<std::string, std::unique_ptr<SubShapes>> m_subShapes; ///< Of measured bodies.
    MeasuredPairs m_pairs;
};

} // namespace Vs::Kernel
