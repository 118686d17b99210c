#include "Server/DataModel/Kernel/EditLook.h"

#include "Server/DataModel/Kernel/LabelState.h"
#include "Server/DataModel/Kernel/Occurrence.h"
#include "Server/DataModel/Kernel/PartShape.h"
#include "Server/DataModel/Kernel/SubShapes.h"
#include "Server/DataModel/Kernel/TriangleParts.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <Quantity_ColorRGBA.hxx>

#include <XCAFDoc.hxx>
#include <XCAFDoc_Color.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <algorithm>

namespace Vs::Kernel {

namespace {

using Document = Handle(TDocStd_Document);

Quantity_ColorRGBA toKernel(const Colour& colour)
{
    return Quantity_ColorRGBA(colour.r, colour.g, colour.b, colour.a);
}

/// The label of a colour, which stays when the change that needed it is undone. It gets a tag that the kernel
/// never assigns, since the kernel reuses its own tags after an undo.
TDF_Label lastingLabel(const Document& document, const Quantity_ColorRGBA& colour)
{
    constexpr int kFirstNumber = 1 << 20;
    TDF_Label label;
    if (XCAFDoc_DocumentTool::ColorTool(document->Main())->FindColor(colour, label))
        return label;
    const TDF_Label all = XCAFDoc_DocumentTool::ColorsLabel(document->Main());
    for (int number = kFirstNumber; label.IsNull() || label.HasAttribute(); ++number)
        label = all.FindChild(number, true);
    XCAFDoc_Color::Set(label, colour);
    return label;
}

void paint(const Document& document, const TDF_Label& label, const std::optional<Colour>& colour)
{
    const Handle(XCAFDoc_ColorTool) tool = XCAFDoc_DocumentTool::ColorTool(document->Main());
    for (const XCAFDoc_ColorType type : {XCAFDoc_ColorSurf, XCAFDoc_ColorGen})
        tool->UnSetColor(label, type);
    if (colour)
        tool->SetColor(label, toKernel(*colour), XCAFDoc_ColorSurf);
}

/// Paints a face or a solid of a part.
void paintPiece(const Document& document, const TDF_Label& part, const ObjectPath& piece,
                const ColourEdit& edit, ShapeLog& log)
{
    const Handle(XCAFDoc_ShapeTool) tool = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    const TopoDS_Shape body = bodyShape(part);
    const TopoDS_Shape shape = SubShapes(body).part(piece.leaf, piece.index);
    if (shape.IsNull())
        throw EditError(EditFault::NoSuchPart, nameOf(part));
    // Its parts are not shapes of the model, and so can't have a colour.
    if (isOfTriangles(body))
        throw EditError(EditFault::Triangles, nameOf(part));
    if (shape.IsSame(body)) {
        paint(document, part, edit.colour);
        return;
    }
    // Face colours are part of the mesh, which is remade for a shape that has changed.
    const TopoDS_Shape changed = renewed(body);
    replaceShape(document, part, changed, [](const TopoDS_Shape& same) { return std::vector{same}; });
    log.note(body, changed, nullptr);
    const TopoDS_Shape placed = shape.Moved(XCAFDoc_ShapeTool::GetShape(part).Location());
    TDF_Label label;
    if (!tool->FindSubShape(part, placed, label))
        tool->AddSubShape(part, placed, label);
    if (label.IsNull())
        throw EditError(EditFault::Refused, nameOf(part));
    paint(document, label, edit.colour);
}

} // namespace

std::vector<std::string> apply(const Document& document, const ColourEdit& edit, ShapeLog& log)
{
    for (const ObjectPath& object : edit.objects) {
        const Occurrence occurrence(document, object.component);
        if (object.leaf == ObjectPath::Leaf::Component)
            paint(document, occurrence.label(), edit.colour);
        else if (object.leaf == ObjectPath::Leaf::Body)
            paint(document, occurrence.shown(), edit.colour);
        else if (object.leaf == ObjectPath::Leaf::Face || object.leaf == ObjectPath::Leaf::Solid)
            paintPiece(document, occurrence.shown(), object, edit, log);
        else
            throw EditError(EditFault::NoSuchPart, nameOf(occurrence.label()));
    }
    return {};
}

bool paintedAlone(const Document& document, const ColourEdit& edit,
                  const std::function<void(const TDF_Label&)>& note)
{
    if (std::ranges::any_of(edit.objects, [](const ObjectPath& object) {
            return object.leaf != ObjectPath::Leaf::Component;
        }))
        return false;
    const TDF_Label colour = edit.colour ? lastingLabel(document, toKernel(*edit.colour)) : TDF_Label();
    for (const ObjectPath& object : edit.objects) {
        const TDF_Label label = Occurrence(document, object.component).label();
        note(label);
        LabelState state = LabelState::of(label);
        state.colour = {};
        state.surfaceColour = {};
        state.putOn(label);
        if (!colour.IsNull()) {
            state.surfaceColour = linkInFront(colour, XCAFDoc::ColorRefGUID(XCAFDoc_ColorSurf));
            state.putOn(label);
        }
    }
    return true;
}

} // namespace Vs::Kernel
