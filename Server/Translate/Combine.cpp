#include "Server/Translate/Combine.h"

#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/Translate/Reading.h"

#include <Quantity_ColorRGBA.hxx>

#include <BRep_Builder.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

namespace Vs::Translate {

namespace {

struct Coloured
{
    TopoDS_Shape shape;
    Colour colour;
};

class Collector
{
public:
    explicit Collector(const Kernel::XdeTree& tree) : m_tree(tree) { m_builder.MakeCompound(m_all); }

    void add(const PartTree::Node& node, const GkMatrix3d& parent, const std::optional<Colour>& inherited)
    {
        const GkMatrix3d placement = parent * node.placement;
        const std::optional<Colour> colour = node.colour ? node.colour : inherited;
        for (const PartTree::Node& child : node.children)
            add(child, placement, colour);
        const auto body = static_cast<size_t>(node.body);
        if (node.body < 0 || m_tree.shapes[body].IsNull())
            return;
        const TopLoc_Location location(Kernel::toMotion(placement));
        const TopoDS_Shape shape = m_tree.shapes[body].Moved(location);
        m_builder.Add(m_all, shape);
        m_colours.push_back({shape, colour.value_or(m_tree.tree.bodies[body].colour)});
        for (const Kernel::ShapeColours::Entry& entry : m_tree.colours[body].entries)
            m_colours.push_back({entry.part.Moved(location), entry.colour});
    }

    const TopoDS_Compound& all() const { return m_all; }
    const std::vector<Coloured>& colours() const { return m_colours; }

private:
    const Kernel::XdeTree& m_tree;
    BRep_Builder m_builder;
    TopoDS_Compound m_all;
    std::vector<Coloured> m_colours;
};

} // namespace

void takeTreeApart(Kernel::XdeModel& model)
{
    const Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(model.document()->Main());
    // What nothing refers to any more becomes a root itself.
    TDF_LabelSequence old;
    for (shapes->GetFreeShapes(old); !old.IsEmpty(); shapes->GetFreeShapes(old)) {
        for (const TDF_Label& root : old)
            if (!shapes->RemoveShape(root))
                throw Unreadable("can't be written: its tree can't be taken apart");
        old.Clear();
    }
}

void combineParts(Kernel::XdeModel& model, const std::string& name)
{
    const Kernel::XdeTree tree = Kernel::readXdeTree(model.document());
    Collector collector(tree);
    for (const PartTree::Node& root : tree.tree.roots)
        collector.add(root, {}, std::nullopt);

    const Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(model.document()->Main());
    takeTreeApart(model);
    const TDF_Label part = shapes->AddShape(collector.all(), false, false);
    TDataStd_Name::Set(part, TCollection_ExtendedString(name.c_str(), true));
    const Handle(XCAFDoc_ColorTool) colours = XCAFDoc_DocumentTool::ColorTool(model.document()->Main());
    for (const auto& [shape, colour] : collector.colours()) {
        const TDF_Label label = shapes->AddSubShape(part, shape);
        if (!label.IsNull())
            colours->SetColor(label, Quantity_ColorRGBA(colour.r, colour.g, colour.b, colour.a),
                              XCAFDoc_ColorSurf);
    }
}

} // namespace Vs::Translate
