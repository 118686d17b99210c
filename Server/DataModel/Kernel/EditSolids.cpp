#include "Server/DataModel/Kernel/EditSolids.h"

#include "Server/DataModel/Kernel/Blend.h"
#include "Server/DataModel/Kernel/Combine.h"
#include "Server/DataModel/Kernel/EditPlaces.h"
#include "Server/DataModel/Kernel/LabelIndex.h"
#include "Server/DataModel/Kernel/Occurrence.h"
#include "Server/DataModel/Kernel/ShapeForm.h"
#include "Server/DataModel/Kernel/SolidTools.h"
#include "Server/DataModel/Kernel/SubShapes.h"
#include "Server/DataModel/Kernel/XdeEdit.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <Quantity_ColorRGBA.hxx>

#include <TDF_LabelSequence.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <algorithm>
#include <map>

namespace Vs::Kernel {

namespace {

using Document = Handle(TDocStd_Document);

/// A body at its place in the model.
struct PlacedBody
{
    TDF_Label part;
    gp_Trsf place;
    std::wstring name;
};

void collectBodies(const TDF_Label& label, const gp_Trsf& parent, std::vector<PlacedBody>& bodies)
{
    gp_Trsf place = parent;
    TDF_Label shown = label;
    if (XCAFDoc_ShapeTool::GetReferredShape(label, shown))
        place.Multiply(XCAFDoc_ShapeTool::GetLocation(label).Transformation());
    if (!XCAFDoc_ShapeTool::IsAssembly(shown)) {
        place.Multiply(XCAFDoc_ShapeTool::GetShape(shown).Location().Transformation());
        bodies.push_back({shown, place, nameOf(label)});
        return;
    }
    TDF_LabelSequence components;
    XCAFDoc_ShapeTool::GetComponents(shown, components);
    for (const TDF_Label& component : components)
        collectBodies(component, place, bodies);
}

/// The shape of a body that has an inside. Throws EditError.
TopoDS_Shape solidShape(const PlacedBody& body)
{
    const TopoDS_Shape shape = bodyShape(body.part);
    if (shape.IsNull())
        throw EditError(EditFault::NoBody, body.name);
    if (fault(shape) == NoAnswer::Triangles)
        throw EditError(EditFault::Triangles, body.name);
    if (solidsOf(shape).IsNull() || TopExp_Explorer(shape, TopAbs_FACE, TopAbs_SOLID).More() ||
        roughVolume(shape) <= 0)
        throw EditError(EditFault::NoSolid, body.name);
    return shape;
}

PlacedBody bodyOf(const Occurrence& occurrence)
{
    PlacedBody body{occurrence.shown(), occurrence.place(), nameOf(occurrence.label())};
    if (XCAFDoc_ShapeTool::IsAssembly(body.part))
        throw EditError(EditFault::NoBody, body.name);
    return body;
}

/// MadeShapes::Question::operation.
int operationOf(const CombineEdit& edit)
{
    return static_cast<int>(edit.kind);
}

int operationOf(const BlendEdit& edit)
{
    constexpr int kBehindCombinations = 16;
    return kBehindCombinations + static_cast<int>(edit.kind);
}

/// The faces of tools bring their colours along, but not that of the body they were of.
void takeFaceColours(const Document& document, const TDF_Label& part, const std::vector<PlacedBody>& tools,
                     const MadeShapes::Answer& answer)
{
    const Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    const Handle(XCAFDoc_ColorTool) colours = XCAFDoc_DocumentTool::ColorTool(document->Main());
    const TopLoc_Location own = XCAFDoc_ShapeTool::GetShape(part).Location();
    for (size_t i = 0; i < tools.size(); ++i)
        for (const ShapeColours::Entry& entry : bodyColours(tools[i].part).entries) {
            for (const TopoDS_Shape& each :
                 answer.made.successors(entry.part.Moved(answer.question.places[i]))) {
                TDF_Label label;
                if (each.ShapeType() == TopAbs_FACE && shapes->AddSubShape(part, each.Moved(own), label))
                    colours->SetColor(
                        label,
                        Quantity_ColorRGBA(entry.colour.r, entry.colour.g, entry.colour.b, entry.colour.a),
                        XCAFDoc_ColorSurf);
            }
        }
}

/// Where other occurrences of the target's part are among the tools, the target becomes a part of its own.
void separate(const Document& document, const Occurrence& target, const std::vector<PlacedBody>& tools)
{
    const TDF_Label part = target.shown();
    if (std::none_of(tools.begin(), tools.end(), [&](const PlacedBody& tool) { return tool.part == part; }))
        return;
    const TopLoc_Location place =
        XCAFDoc_ShapeTool::GetLocation(target.label()) * XCAFDoc_ShapeTool::GetShape(part).Location();
    const TDF_Label own = clonePart(document, part, bodyShape(part),
                                    [](const TopoDS_Shape& same) { return std::vector{same}; });
    makeReference(target.label(), own, place);
}

} // namespace

std::vector<std::string> apply(const Document& document, const CombineEdit& edit, MadeShapes& known,
                               ShapeLog& log)
{
    const Occurrence target(document, edit.target);
    PlacedBody body = bodyOf(target);
    std::vector<PlacedBody> tools;
    for (const Occurrence& tool : topmostOccurrences(document, edit.tools)) {
        if (tool.label() == target.label() || edit.target.starts_with(tool.id() + '/'))
            throw EditError(EditFault::OwnTool, body.name);
        collectBodies(tool.label(), tool.parentPlace(), tools);
    }
    const gp_Trsf toTarget = body.place.Inverted();
    // The kernel takes shapes for the same only where their locations are the same objects: the answer's.
    MadeShapes::Question question{operationOf(edit), 0, {solidShape(body)}, {}};
    for (const PlacedBody& tool : tools) {
        question.shapes.push_back(solidShape(tool));
        question.places.emplace_back(toTarget * tool.place);
    }
    const MadeShapes::Answer& answer = known.make(question, [&](const MadeShapes::Question& asked) {
        std::vector<TopoDS_Shape> placed;
        for (size_t i = 0; i < asked.places.size(); ++i)
            placed.push_back(asked.shapes[i + 1].Moved(asked.places[i]));
        return combined(edit.kind, asked.shapes.front(), placed, body.name);
    });
    separate(document, target, tools);
    replaceShape(document, target.shown(), answer.made.shape, answer.made.successors);
    log.note(question.shapes.front(), answer.made.shape, answer.made.successors);
    takeFaceColours(document, target.shown(), tools, answer);
    if (!edit.keepTools)
        removeOccurrences(document, edit.tools);
    return {};
}

std::vector<std::string> apply(const Document& document, const NestEdit& edit, MadeShapes& known,
                               ShapeLog& log)
{
    const Occurrence parent(document, edit.parent);
    if (XCAFDoc_ShapeTool::IsAssembly(parent.shown()))
        return nest(document, edit.components, parent);
    apply(document, CombineEdit{CombineEdit::Kind::Join, edit.parent, edit.components}, known, log);
    return {edit.parent};
}

std::vector<std::string> apply(const Document& document, const BlendEdit& edit, MadeShapes& known,
                               ShapeLog& log)
{
    struct Edges
    {
        std::wstring name;
        TopTools_IndexedMapOfShape edges;
    };
    std::map<std::string, Edges> parts;
    for (const ObjectPath& path : edit.edges) {
        const PlacedBody body = bodyOf(Occurrence(document, path.component));
        const SubShapes shapes(bodyShape(body.part));
        const TopoDS_Shape edge = shapes.part(ObjectPath::Leaf::Edge, path.index);
        if (edge.IsNull() || path.leaf != ObjectPath::Leaf::Edge)
            throw EditError(EditFault::NoSuchPart, body.name);
        if (fault(shapes.shape()) == NoAnswer::Triangles)
            throw EditError(EditFault::Triangles, body.name);
        if (visibleEdges(shapes.shape())[path.index].faces.Extent() < 2)
            throw EditError(EditFault::FreeEdge, body.name);
        Edges& edges = parts[entryOf(body.part)];
        edges.name = body.name;
        edges.edges.Add(edge);
    }
    for (const auto& [entry, chosen] : parts) {
        const TDF_Label part = labelOf(document, entry);
        const TopoDS_Shape body = bodyShape(part);
        const std::vector<TopoDS_Shape> edges(chosen.edges.cbegin(), chosen.edges.cend());
        MadeShapes::Question question{operationOf(edit), edit.size, edges, {}};
        question.shapes.push_back(body);
        const auto make = [&](const MadeShapes::Question&) {
            return blended(edit.kind, body, edges, edit.size, chosen.name);
        };
        const MadeShape& made = known.make(question, make).made;
        replaceShape(document, part, made.shape, made.successors);
        log.note(body, made.shape, made.successors);
    }
    return {};
}

} // namespace Vs::Kernel
