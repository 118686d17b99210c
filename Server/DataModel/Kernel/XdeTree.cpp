#include "Server/DataModel/Kernel/XdeTree.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Kernel/LabelIndex.h"
#include "Server/DataModel/Kernel/LabelMap.h"
#include "Server/DataModel/Kernel/LabelState.h"
#include "Server/DataModel/Kernel/Materials.h"

#include <Quantity_ColorRGBA.hxx>

#include <BRep_TFace.hxx>
#include <TCollection_AsciiString.hxx>
#include <TCollection_ExtendedString.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <TopLoc_Location.hxx>
#include <XCAFDoc.hxx>
#include <XCAFDoc_Color.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <gp_Trsf.hxx>

#include <algorithm>
#include <optional>

namespace Vs::Kernel {

namespace {

std::optional<Colour> colourOf(const TDF_Label& label)
{
    for (const XCAFDoc_ColorType type : {XCAFDoc_ColorSurf, XCAFDoc_ColorGen}) {
        TDF_Label colourLabel;
        Handle(XCAFDoc_Color) colour;
        if (XCAFDoc_ColorTool::GetColor(label, type, colourLabel) &&
            colourLabel.FindAttribute(XCAFDoc_Color::GetID(), colour)) {
            const Quantity_ColorRGBA& found = colour->GetColorRGBA();
            const Quantity_Color& rgb = found.GetRGB();
            return Colour{static_cast<float>(rgb.Red()), static_cast<float>(rgb.Green()),
                          static_cast<float>(rgb.Blue()), found.Alpha()};
        }
    }
    return std::nullopt;
}

class TreeReader
{
public:
    explicit TreeReader(XdeTree& result, bool deep = true) : m_result(result), m_deep(deep) {}

    PartTree::Node visit(const TDF_Label& label, const std::string& prefix, int depth)
    {
        PartTree::Node node;
        node.id = prefix + entryOf(label);
        node.name = nameOf(label);
        node.visible = isShown(label);
        TDF_Label what = label;
        if (XCAFDoc_ShapeTool::IsReference(label)) {
            node.placement = toMatrix(XCAFDoc_ShapeTool::GetLocation(label).Transformation());
            node.colour = colourOf(label);
            XCAFDoc_ShapeTool::GetReferredShape(label, what);
        }
        Shown& shown = shownAt(what);
        node.visible = node.visible && shown.visible;
        node.part = shown.entry;
        if (isMadeUp(node.name) && !label.IsAttribute(namedByUser()))
            node.name = nameOf(what);
        // An assembly that contains itself is no tree; it ends here.
        if (shown.isAssembly && depth < kDeepestTree) {
            if (!node.colour)
                node.colour = colourOf(what);
            TDF_LabelSequence components;
            if (m_deep)
                XCAFDoc_ShapeTool::GetComponents(what, components);
            for (const TDF_Label& component : components)
                if (!isRemoved(component))
                    node.children.push_back(visit(component, node.id + "/", depth + 1));
        } else {
            if (shown.body < 0)
                readBody(what, shown);
            node.body = shown.body;
            if (shown.place)
                node.placement = node.placement * *shown.place;
        }
        return node;
    }

private:
    static constexpr int kDeepestTree = 500;

    /// What all occurrences of a part or assembly share.
    struct Shown
    {
        std::string entry;
        bool visible = true, isAssembly = false;
        int body = -1;                   ///< Of a part that was read, its place in the list.
        std::optional<GkMatrix3d> place; ///< Of its shape, where it has one.
    };

    Shown& shownAt(const TDF_Label& label)
    {
        if (Shown* const known = m_shown.ChangeSeek(label))
            return *known;
        return *m_shown.Bound(label,
                              {entryOf(label), isShown(label), XCAFDoc_ShapeTool::IsAssembly(label), -1, {}});
    }

    void readBody(const TDF_Label& label, Shown& shown)
    {
        shown.body = static_cast<int>(m_result.tree.bodies.size());
        PartTree::Body body;
        body.entry = shown.entry;
        body.name = nameOf(label);
        body.colour = colourOf(label).value_or(Colour{});
        m_result.shapes.push_back(bodyShape(label));
        body.revision = revisionOf(m_result.shapes.back());
        body.shape = std::make_shared<const TopoDS_Shape>(m_result.shapes.back());
        m_result.tree.bodies.push_back(std::move(body));
        m_result.colours.push_back(bodyColours(label));
        if (const TopLoc_Location own = XCAFDoc_ShapeTool::GetShape(label).Location(); !own.IsIdentity())
            shown.place = toMatrix(own.Transformation());
    }

    XdeTree& m_result;
    bool m_deep;
    LabelMap<Shown> m_shown;
};

} // namespace

XdeTree readXdeTree(const Handle(TDocStd_Document) & document)
{
    XdeTree result;
    TreeReader reader(result);
    TDF_LabelSequence roots;
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->GetFreeShapes(roots);
    for (const TDF_Label& root : roots)
        if (!isRemoved(root))
            result.tree.roots.push_back(reader.visit(root, {}, 0));
    return result;
}

XdeTree readXdeBranches(const Handle(TDocStd_Document) & document, const std::vector<std::string>& places,
                        bool deep)
{
    XdeTree result;
    TreeReader reader(result, deep);
    const TDF_Label shapes = XCAFDoc_DocumentTool::ShapesLabel(document->Main());
    for (const std::string& place : places) {
        const TDF_Label label = labelOf(document, place);
        if (label.IsNull() || isRemoved(label))
            continue;
        const bool isTop = label.Father() == shapes;
        if (isTop ? XCAFDoc_ShapeTool::IsShape(label) && XCAFDoc_ShapeTool::IsFree(label)
                  : XCAFDoc_ShapeTool::IsComponent(label))
            result.tree.roots.push_back(reader.visit(label, {}, 0));
    }
    return result;
}

std::wstring nameOf(const TDF_Label& label)
{
    Handle(TDataStd_Name) name;
    if (!label.FindAttribute(TDataStd_Name::GetID(), name))
        return {};
    const TCollection_AsciiString utf8(name->Get());
    return Strings::widen({utf8.ToCString(), static_cast<size_t>(utf8.Length())});
}

void setName(const TDF_Label& label, const std::wstring& name)
{
    TDataStd_Name::Set(label, TCollection_ExtendedString(Strings::narrow(name).c_str(), true));
}

bool isMadeUp(const std::wstring& name)
{
    return name.starts_with(L"NAUO") || name.starts_with(L"=>[") ||
           name.find_first_not_of(L"0123456789 ") == std::wstring::npos;
}

const Standard_GUID& namedByUser()
{
    static const Standard_GUID mark("6f0a4c4e-3d0b-4f57-9b43-0f7f5f1f8a21");
    return mark;
}

TopoDS_Shape bodyShape(const TDF_Label& label)
{
    const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(label);
    return shape.IsNull() ? shape : shape.Located(TopLoc_Location());
}

uint64_t revisionOf(const TopoDS_Shape& body)
{
    return reinterpret_cast<uintptr_t>(body.TShape().get());
}

ShapeColours bodyColours(const TDF_Label& label)
{
    ShapeColours colours;
    colours.finish = finishOf(label);
    TDF_LabelSequence parts;
    if (!XCAFDoc_ShapeTool::GetSubShapes(label, parts))
        return colours;
    const TopLoc_Location own = XCAFDoc_ShapeTool::GetShape(label).Location();
    for (const TDF_Label& part : parts) {
        const std::optional<Colour> colour = colourOf(part);
        TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(part);
        if (!colour || shape.IsNull())
            continue;
        if (!own.IsIdentity())
            shape.Location(own.Inverted() * shape.Location());
        colours.entries.push_back({shape, *colour, finishOf(part)});
    }
    // Solids before shells before faces: the order of the kernel's kinds of shapes.
    std::stable_sort(colours.entries.begin(), colours.entries.end(),
                     [](const auto& a, const auto& b) { return a.part.ShapeType() < b.part.ShapeType(); });
    return colours;
}

bool isShown(const TDF_Label& label)
{
    return !label.IsAttribute(XCAFDoc::InvisibleGUID());
}

std::string entryOf(const TDF_Label& label)
{
    // The kernel's own way to it makes a list of numbers and several texts.
    std::string entry;
    for (TDF_Label each = label; !each.IsNull(); each = each.IsRoot() ? TDF_Label() : each.Father())
        entry.insert(0, std::to_string(each.Tag()) + (entry.empty() ? "" : ":"));
    return entry;
}

GkMatrix3d toMatrix(const gp_Trsf& motion)
{
    GkMatrix3d matrix;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            matrix.entry[row][column] = motion.Value(row + 1, column + 1);
    return matrix;
}

gp_Trsf toMotion(const GkMatrix3d& matrix)
{
    gp_Trsf motion;
    const auto& m = matrix.entry;
    motion.SetValues(m[0][0], m[0][1], m[0][2], m[0][3], m[1][0], m[1][1], m[1][2], m[1][3], m[2][0], m[2][1],
                     m[2][2], m[2][3]);
    return motion;
}

} // namespace Vs::Kernel
