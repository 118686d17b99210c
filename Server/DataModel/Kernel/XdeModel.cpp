#include "Server/DataModel/Kernel/XdeModel.h"

#include "Server/DataModel/Kernel/BodyMesher.h"
#include "Server/DataModel/Kernel/FinerFaces.h"
#include "Server/DataModel/Kernel/Guarded.h"
#include "Server/DataModel/Kernel/LabelIndex.h"
#include "Server/DataModel/Kernel/Materials.h"
#include "Server/DataModel/Kernel/Measure.h"
#include "Server/DataModel/Kernel/MeasureAngle.h"
#include "Server/DataModel/Kernel/MeasureParts.h"
#include "Server/DataModel/Kernel/PartFacts.h"
#include "Server/DataModel/Kernel/PlacedAt.h"
#include "Server/DataModel/Kernel/PrimitiveShape.h"
#include "Server/DataModel/Kernel/Recognise.h"
#include "Server/DataModel/Kernel/SubShapes.h"
#include "Server/DataModel/Kernel/XdeEdit.h"
#include "Server/DataModel/Kernel/XdeStorage.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <Quantity_ColorRGBA.hxx>

#include <BRep_Builder.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_Editor.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace Vs::Kernel {

namespace {

TDF_Label bodyLabel(const Handle(TDocStd_Document) & document, const std::string& entry)
{
    const TDF_Label label = labelOf(document, entry);
    if (label.IsNull() || bodyShape(label).IsNull())
        throw std::runtime_error("its shape isn't in the model any more");
    return label;
}

} // namespace

XdeModel::XdeModel() : m_document(newXdeDocument())
{
    m_transaction.document(m_document);
}

XdeModel::XdeModel(std::string_view bytes)
{
    guarded([&] {
        m_document = readXdeDocument(bytes);
        m_transaction.document(m_document);
    });
}

XdeModel::~XdeModel()
{
    if (!m_document.IsNull())
        closeXdeDocument(m_document);
}

void XdeModel::write(std::ostream& stream)
{
    guarded([&] {
        m_transaction.withoutRemoved([&] {
            m_transaction.updateAssemblies();
            writeXdeDocument(m_document, stream);
        });
    });
}

PartTree XdeModel::tree()
{
    return guarded([&] {
        m_transaction.touched().clear();
        return readXdeTree(m_document).tree;
    });
}

std::vector<TouchedPlace> XdeModel::takeTouched()
{
    return m_transaction.touched().take();
}

PartTree XdeModel::branches(const std::vector<std::string>& places, bool deep)
{
    return guarded([&] { return readXdeBranches(m_document, places, deep).tree; });
}

void XdeModel::forgetMaterials()
{
    guarded([&] { Kernel::forgetMaterials(m_document); });
}

uint64_t XdeModel::revision(const std::string& entry)
{
    return guarded([&] { return revisionOf(bodyShape(bodyLabel(m_document, entry))); });
}

// A model that can't be edited has no changes to follow.
std::shared_ptr<const PartSuccessors> XdeModel::successors(uint64_t, uint64_t)
{
    return nullptr;
}

std::shared_ptr<const BodyMesh> XdeModel::mesh(const std::string& entry,
                                               const TranslatorRefinement& refinement,
                                               const std::function<bool(double)>& goOn)
{
    return guarded([&] {
        const TDF_Label label = bodyLabel(m_document, entry);
        return meshRunner()(
            [shape = bodyShape(label), colours = bodyColours(label),
             refinement](const Message_ProgressRange& progress, MeshThreads threads) {
                return meshBody(shape, colours, refinement, progress, threads);
            },
            goOn);
    });
}

ModelKernel::Mesher XdeModel::finerMesher(const std::string& entry, double deviation, int level)
{
    return guarded([&]() -> Mesher {
        const TDF_Label label = bodyLabel(m_document, entry);
        const MakeMesh make = [body = looseBody(bodyShape(label), bodyColours(label)), deviation,
                               level](const Message_ProgressRange& progress, MeshThreads) {
            return finerMesh(body, deviation, level, progress);
        };
        return [make, run = meshRunner()](const std::function<bool(double)>& goOn) {
            return guarded([&] { return run(make, goOn); });
        };
    });
}

MeshRunner* XdeModel::meshRunner() const
{
    return
        [](const MakeMesh& make, const std::function<bool(double)>&) { return make({}, MeshThreads::All); };
}

BodyProperties XdeModel::properties(const std::string& entry, BodyMeasure what)
{
    return guarded([&] { return measureBody(bodyShape(bodyLabel(m_document, entry)), what); });
}

BodyProperties XdeModel::measureBody(const TopoDS_Shape& body, BodyMeasure what)
{
    return measureShape(body, what);
}

const SubShapes& XdeModel::subShapes(const std::string& entry)
{
    const TopoDS_Shape shape = bodyShape(bodyLabel(m_document, entry));
    std::unique_ptr<SubShapes>& known = m_subShapes[entry];
    if (!known || !known->shape().IsEqual(shape))
        known = std::make_unique<SubShapes>(shape);
    return *known;
}

ShapeAnswer XdeModel::measurePart(const MeasuredShape& part, EMeasureType type)
{
    return guarded([&] {
        const SubShapes& shapes = subShapes(part.entry);
        const TopoDS_Shape shape = shapes.part(part.leaf, part.index);
        return shape.IsNull() ? ShapeAnswer{NoAnswer::Missing, {}, false, {}}
                              : Kernel::measurePart(shapes, shape, type);
    });
}

TopoDS_Shape XdeModel::placed(const std::vector<MeasuredShape>& shapes, PlacedAt& at)
{
    TopoDS_Compound all;
    BRep_Builder builder;
    if (shapes.size() > 1)
        builder.MakeCompound(all);
    for (const MeasuredShape& each : shapes) {
        const TopoDS_Shape shape = subShapes(each.entry).part(each.leaf, each.index);
        if (shape.IsNull())
            return {};
        const TopoDS_Shape moved = at(shape, each.placement);
        if (shapes.size() == 1)
            return moved;
        builder.Add(all, moved);
    }
    return all;
}

std::vector<TopoDS_Shape> XdeModel::bodiesOf(const std::vector<MeasuredShape>& shapes)
{
    std::vector<TopoDS_Shape> bodies;
    for (const MeasuredShape& each : shapes)
        bodies.push_back(bodyShape(bodyLabel(m_document, each.entry)));
    return bodies;
}

ShapeAnswer XdeModel::measurePair(const std::vector<MeasuredShape>& first,
                                  const std::vector<MeasuredShape>& second, EMeasureType type)
{
    return guarded([&] {
        std::vector<TopoDS_Shape> bodies = bodiesOf(first);
        for (const TopoDS_Shape& body : bodiesOf(second))
            bodies.push_back(body);
        if (const ShapeAnswer* const known = m_pairs.find(first, second, type, bodies))
            return *known;
        const ShapeAnswer answer = findPair(first, second, type);
        m_pairs.add({first, second, type, std::move(bodies), answer});
        return answer;
    });
}

ShapeAnswer XdeModel::distance(const TopoDS_Shape& first, const TopoDS_Shape& second)
{
    return measureDistance(first, second);
}

ShapeAnswer XdeModel::findPair(const std::vector<MeasuredShape>& first,
                               const std::vector<MeasuredShape>& second, EMeasureType type)
{
    return guarded([&]() -> ShapeAnswer {
        PlacedAt at(type);
        const TopoDS_Shape shapes[] = {placed(first, at), placed(second, at)};
        for (const bool isSecond : {false, true})
            if (shapes[isSecond].IsNull())
                return {NoAnswer::Missing, {}, isSecond, {}};
        if (type != EMeasureType::Angle)
            return distance(shapes[0], shapes[1]);
        GkPoint3d middles[2];
        for (const bool isSecond : {false, true}) {
            const MeasuredShape& shape = (isSecond ? second : first).front();
            if (shape.leaf <= ObjectPath::Leaf::Body || shape.leaf == ObjectPath::Leaf::Solid)
                return {NoAnswer::WrongKind, ShapeKind::Body, isSecond, {}};
            ShapeAnswer middle = measurePart(shape, EMeasureType::PositionX);
            middle.second = isSecond;
            if (middle.why != NoAnswer::None)
                return middle;
            middles[isSecond] = shape.placement * middle.result.point1;
        }
        return measureAngle(shapes[0], shapes[1], middles[0], middles[1]);
    });
}

std::vector<uint32_t> XdeModel::solidsOfFaces(const std::string& entry)
{
    return guarded([&] { return subShapes(entry).solidsOfFaces(); });
}

std::vector<uint32_t> XdeModel::loop(const MeasuredShape& face)
{
    return guarded([&] {
        const SubShapes& shapes = subShapes(face.entry);
        const TopoDS_Shape shape = shapes.part(ObjectPath::Leaf::Face, face.index);
        return shape.IsNull() ? std::vector<uint32_t>() : shapes.loop(TopoDS::Face(shape));
    });
}

BodyParts XdeModel::parts(const std::string& entry)
{
    return guarded([&] { return partsOf(subShapes(entry)); });
}

std::vector<PartExtent> XdeModel::extents(const std::string& entry, ObjectPath::Leaf leaf)
{
    return guarded([&] { return extentsOf(subShapes(entry), leaf); });
}

std::optional<ModelKernel::Recognised> XdeModel::recognise(const std::string& entry)
{
    return guarded([&] { return Kernel::recognise(bodyShape(bodyLabel(m_document, entry))); });
}

std::string XdeModel::addPrimitive(Primitive kind, const double (&sizes)[3], const GkMatrix3d& placement,
                                   const std::wstring& name, const std::optional<Colour>& colour)
{
    return guarded([&] {
        // Colours are shared by parts, in lists of the kernel's.
        if (colour)
            m_transaction.beginKernel();
        const TDF_Label part = newRootLabel(m_document);
        XCAFDoc_DocumentTool::ShapeTool(m_document->Main())->SetShape(part, primitiveShape(kind, sizes));
        m_transaction.noteAdded(part);
        setName(part, name);
        if (colour)
            XCAFDoc_DocumentTool::ColorTool(m_document->Main())
                ->SetColor(part, Quantity_ColorRGBA(colour->r, colour->g, colour->b, colour->a),
                           XCAFDoc_ColorSurf);
        const TopLoc_Location location(toMotion(placement));
        if (location.IsIdentity())
            return entryOf(part);
        // A placed part is a reference to the part, as it is in an assembly.
        const TDF_Label placed = newRootLabel(m_document);
        m_transaction.note(placed);
        makeReference(placed, part, location);
        setName(placed, name);
        return entryOf(placed);
    });
}

void XdeModel::insert(ModelKernel& other)
{
    auto* source = dynamic_cast<XdeModel*>(&other);
    if (!source)
        throw std::runtime_error("the other model is of another kernel");
    guarded([&] {
        m_transaction.beginKernel();
        TDF_LabelSequence roots;
        XCAFDoc_DocumentTool::ShapeTool(source->m_document->Main())->GetFreeShapes(roots);
        if (!XCAFDoc_Editor::Extract(roots, XCAFDoc_DocumentTool::ShapesLabel(m_document->Main())))
            throw std::runtime_error("the parts can't be taken over");
    });
}

std::vector<std::string> XdeModel::paste(ModelKernel&, const std::vector<std::string>&)
{
    throw std::runtime_error("nothing can be pasted into this model");
}

void XdeModel::rename(const std::string& component, const std::wstring& name)
{
    guarded([&] {
        const TDF_Label label = occurrenceLabel(m_document, component);
        m_transaction.note(label);
        renameOccurrence(label, name);
    });
}

void XdeModel::remove(const std::vector<std::string>& components)
{
    guarded([&] { m_transaction.remove(components); });
}

void XdeModel::setVisible(const std::vector<std::string>& components, bool visible)
{
    guarded([&] {
        for (const std::string& component : components) {
            const TDF_Label label = occurrenceLabel(m_document, component);
            TDF_Label part;
            m_transaction.note(label);
            if (XCAFDoc_ShapeTool::GetReferredShape(label, part))
                m_transaction.note(part);
            showOccurrence(label, visible);
        }
    });
}

std::vector<std::string> XdeModel::edit(const ModelEdit&)
{
    throw std::logic_error("this program reads and writes models but can't edit them");
}

void XdeModel::begin()
{
    m_transaction.begin();
}

std::unique_ptr<ModelChange> XdeModel::commit()
{
    return guarded([&] { return m_transaction.commit(); });
}

void XdeModel::abort()
{
    m_transaction.abort();
}

std::unique_ptr<ModelChange> XdeModel::revert(const ModelChange& change)
{
    return guarded([&] { return m_transaction.revert(change); });
}

} // namespace Vs::Kernel
