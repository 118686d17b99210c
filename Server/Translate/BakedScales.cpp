#include "Server/Translate/BakedScales.h"

#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/Translate/Combine.h"
#include "Server/Translate/RefuseMeshes.h"

#include <Quantity_ColorRGBA.hxx>

#include <BRepBuilderAPI_Transform.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <gp_Trsf.hxx>

#include <algorithm>
#include <cmath>
#include <map>

namespace Vs::Translate {

namespace {

/// How far from 1 a scale may be through rounding alone.
constexpr double kRounding = 1e-9;

bool isRigid(const gp_Trsf& motion)
{
    return std::abs(motion.ScaleFactor() - 1) <= kRounding;
}

bool hasScale(const PartTree::Node& node)
{
    return !isRigid(Kernel::toMotion(node.placement)) ||
           std::any_of(node.children.begin(), node.children.end(), hasScale);
}

/// Rebuilds a tree, turning scaled parts into separate parts.
class Rebuilder
{
public:
    Rebuilder(const Kernel::XdeTree& tree, const Handle(TDocStd_Document) & document)
        : m_tree(tree),
          m_shapes(XCAFDoc_DocumentTool::ShapeTool(document->Main())),
          m_colours(XCAFDoc_DocumentTool::ColorTool(document->Main()))
    {
    }

    void build()
    {
        for (const PartTree::Node& root : m_tree.tree.roots) {
            const Placed placed = place(root, 1);
            m_shapes->UpdateAssemblies();
            if (placed.motion.IsIdentity()) {
                look(root, placed.product);
                continue;
            }
            // A placed one at the top is a reference.
            look(root, m_shapes->AddShape(XCAFDoc_ShapeTool::GetShape(placed.product).Located(placed.motion),
                                          false));
        }
    }

private:
    struct Placed
    {
        TDF_Label product;
        TopLoc_Location motion;
    };

    /// `scale` is the product of all scales above.
    Placed place(const PartTree::Node& node, double scale)
    {
        gp_Trsf motion = Kernel::toMotion(node.placement);
        const double inside = isRigid(motion) ? scale : scale * motion.ScaleFactor();
        motion.SetTranslationPart(motion.TranslationPart() * scale);
        if (!isRigid(motion))
            motion.SetScaleFactor(1);
        return {product(node, inside), TopLoc_Location(motion)};
    }

    TDF_Label product(const PartTree::Node& node, double scale)
    {
        if (node.children.empty() && node.body >= 0)
            return part(static_cast<size_t>(node.body), scale);
        // Several occurrences keep sharing one product.
        TDF_Label& known = m_assemblies[{node.part, scale}];
        if (!known.IsNull() && !node.part.empty())
            return known;
        const TDF_Label assembly = m_shapes->NewShape();
        known = assembly;
        Kernel::setName(assembly, node.name);
        for (const PartTree::Node& child : node.children) {
            const Placed placed = place(child, scale);
            look(child, m_shapes->AddComponent(assembly, placed.product, placed.motion));
        }
        return assembly;
    }

    TDF_Label part(size_t body, double scale)
    {
        TDF_Label& known = m_parts[{body, scale}];
        if (!known.IsNull())
            return known;
        gp_Trsf size;
        size.SetScaleFactor(scale);
        BRepBuilderAPI_Transform scaled(size);
        const bool same = isRigid(size);
        if (!same)
            scaled.Perform(m_tree.shapes[body], true);
        known = m_shapes->AddShape(same ? m_tree.shapes[body] : scaled.Shape(), false, false);
        const PartTree::Body& own = m_tree.tree.bodies[body];
        Kernel::setName(known, own.name);
        colour(known, own.colour);
        for (const Kernel::ShapeColours::Entry& entry : m_tree.colours[body].entries)
            if (const TDF_Label label =
                    m_shapes->AddSubShape(known, same ? entry.part : scaled.ModifiedShape(entry.part));
                !label.IsNull())
                colour(label, entry.colour);
        return known;
    }

    void look(const PartTree::Node& node, const TDF_Label& label)
    {
        Kernel::setName(label, node.name);
        if (node.colour)
            colour(label, *node.colour);
        if (!node.visible)
            m_colours->SetVisibility(label, false);
    }

    void colour(const TDF_Label& label, const Colour& colour)
    {
        m_colours->SetColor(label, Quantity_ColorRGBA(colour.r, colour.g, colour.b, colour.a),
                            XCAFDoc_ColorSurf);
    }

    const Kernel::XdeTree& m_tree;
    Handle(XCAFDoc_ShapeTool) m_shapes;
    Handle(XCAFDoc_ColorTool) m_colours;
    std::map<std::pair<std::string, double>, TDF_Label> m_assemblies;
    std::map<std::pair<size_t, double>, TDF_Label> m_parts;
};

} // namespace

void bakeScales(Kernel::XdeModel& model)
{
    const Kernel::XdeTree tree = Kernel::readXdeTree(model.document());
    if (std::none_of(tree.tree.roots.begin(), tree.tree.roots.end(), hasScale))
        return;
    refuseMeshes(model);
    takeTreeApart(model);
    Rebuilder(tree, model.document()).build();
}

} // namespace Vs::Translate
