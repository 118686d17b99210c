#include "Server/Translate/StepAssemblies.h"

#include "Server/Translate/Reading.h"

#include <Interface_EntityIterator.hxx>
#include <Interface_Graph.hxx>
#include <StepBasic_Product.hxx>
#include <StepBasic_ProductDefinitionFormation.hxx>
#include <StepGeom_Axis2Placement3d.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_ItemDefinedTransformation.hxx>
#include <StepRepr_ProductDefinitionShape.hxx>
#include <StepRepr_ShapeRepresentationRelationshipWithTransformation.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TransferBRep.hxx>
#include <TransferBRep_ShapeBinder.hxx>

#include <algorithm>
#include <array>

namespace Vs::Translate {

namespace {

std::string nameOf(const Handle(StepBasic_ProductDefinition) & product)
{
    const Handle(StepBasic_ProductDefinitionFormation) formation = product->Formation();
    const Handle(StepBasic_Product) whole = formation.IsNull() ? nullptr : formation->OfProduct();
    return whole.IsNull() || whole->Name().IsNull() ? "" : whole->Name()->ToCString();
}

} // namespace

StepAssemblies::StepAssemblies(STEPControl_ActorRead& actor,
                               const Handle(Transfer_TransientProcess) & process)
    : m_actor(actor), m_process(process)
{
    const Handle(Interface_InterfaceModel)& model = process->Model();
    for (int i = 1; i <= model->NbEntities(); ++i)
        m_products += model->Value(i)->IsKind(STANDARD_TYPE(StepBasic_ProductDefinition)) ? 1 : 0;
}

void StepAssemblies::bindBelow(const Product& root, const Message_ProgressRange& range)
{
    Message_ProgressScope scope(range, "Assembly", m_products);
    std::vector<Level> levels;
    levels.push_back(enter(root));
    while (!levels.empty() && scope.More()) {
        const Product needed = advance(levels.back());
        if (!needed.IsNull()) {
            levels.push_back(enter(needed));
            checkLimits(levels.size(), 1);
            continue;
        }
        const Level level = std::move(levels.back());
        levels.pop_back();
        leave(level);
        // The kernel transfers the outermost one like all roots.
        if (!levels.empty())
            m_actor.TransferShape(level.product, m_process, Standard_True, Standard_False, scope.Next());
    }
}

StepAssemblies::Level StepAssemblies::enter(const Product& product)
{
    if (!m_entered.insert(product.get()).second)
        throw Unreadable("holds an assembly that contains itself: \"" + nameOf(product) + "\"");
    return {product, usagesOf(product)};
}

void StepAssemblies::leave(const Level& level)
{
    checkLimits(1, level.parts);
    m_parts[level.product.get()] = std::max<uint64_t>(1, level.parts);
}

StepAssemblies::Product StepAssemblies::advance(Level& level)
{
    for (; level.next < level.usages.size(); ++level.next) {
        const Usage& usage = level.usages[level.next];
        if (!level.pending)
            level.pending = occurrence(usage);
        if (!level.pending)
            continue;
        const auto known = m_parts.find(level.pending->product.get());
        if (known == m_parts.end())
            return level.pending->product;
        level.parts += known->second;
        bind(usage, *level.pending);
        level.pending.reset();
    }
    return {};
}

void StepAssemblies::bind(const Usage& usage, const Occurrence& occurrence)
{
    TopoDS_Shape shape = TransferBRep::ShapeResult(m_process->Find(occurrence.product));
    if (shape.IsNull())
        return;
    if (occurrence.moved && occurrence.placement.Form() != gp_Identity)
        shape.Move(
            TopLoc_Location(occurrence.reversed ? occurrence.placement.Inverted() : occurrence.placement));
    m_process->Bind(usage, new TransferBRep_ShapeBinder(shape));
}

std::vector<StepAssemblies::Usage> StepAssemblies::usagesOf(const Product& product) const
{
    const Interface_Graph& graph = m_process->Graph();
    std::vector<Usage> usages;
    const auto take = [&](const Handle(Standard_Transient) & entity) {
        const Usage usage = Usage::DownCast(entity);
        if (!usage.IsNull() && usage->RelatingProductDefinition() == product)
            usages.push_back(usage);
    };
    for (Interface_EntityIterator each = graph.Sharings(product); each.More(); each.Next()) {
        take(each.Value());
        if (each.Value()->IsKind(STANDARD_TYPE(StepRepr_ProductDefinitionShape)))
            for (Interface_EntityIterator use = graph.Sharings(each.Value()); use.More(); use.Next())
                take(use.Value());
    }
    return usages;
}

std::optional<StepAssemblies::Occurrence> StepAssemblies::occurrence(const Usage& usage)
{
    if (m_process->IsBound(usage))
        return {};
    const Interface_Graph& graph = m_process->Graph();
    Occurrence found;
    for (Interface_EntityIterator shape = graph.Sharings(usage); shape.More(); shape.Next()) {
        if (!shape.Value()->IsKind(STANDARD_TYPE(StepRepr_ProductDefinitionShape)))
            continue;
        for (Interface_EntityIterator each = graph.Sharings(shape.Value()); each.More(); each.Next()) {
            const auto placing =
                Handle(StepShape_ContextDependentShapeRepresentation)::DownCast(each.Value());
            if (placing.IsNull() || placing->RepresentationRelation().IsNull())
                continue;
            const Handle(StepRepr_RepresentationRelationship) relation = placing->RepresentationRelation();
            if (relation->Rep1().IsNull() || relation->Rep2().IsNull() ||
                placing->RepresentedProductRelation().IsNull())
                return {};
            found.reversed = reverses(placing, usage);
            found.moved = place(relation, found.placement);
            if (found.product.IsNull())
                found.product = details(found.reversed ? relation->Rep2() : relation->Rep1()).shown;
        }
    }
    return found.product.IsNull() ? std::nullopt : std::optional(found);
}

// Files from some programs relate the assembly and its part the other way round than the usage, which is what
// counts.
bool StepAssemblies::reverses(const Handle(StepShape_ContextDependentShapeRepresentation) & placing,
                              const Usage& usage)
{
    if (placing->RepresentedProductRelation()->Definition().ProductDefinitionRelationship() != usage)
        return false;
    const Product first = details(placing->RepresentationRelation()->Rep1()).owner;
    const Product second = details(placing->RepresentationRelation()->Rep2()).owner;
    const Product part = usage->RelatedProductDefinition(), whole = usage->RelatingProductDefinition();
    if (first == part && second == whole)
        return false;
    return second == part || first == whole;
}

bool StepAssemblies::place(const Handle(StepRepr_RepresentationRelationship) & relation, gp_Trsf& placement)
{
    const auto placed =
        Handle(StepRepr_ShapeRepresentationRelationshipWithTransformation)::DownCast(relation);
    const Handle(StepRepr_ItemDefinedTransformation) transformation =
        placed.IsNull() ? nullptr : placed->TransformationOperator().ItemDefinedTransformation();
    if (transformation.IsNull())
        return m_actor.ComputeSRRWT(relation, m_process, placement);
    const auto from = Handle(StepGeom_Axis2Placement3d)::DownCast(transformation->TransformItem1());
    const auto to = Handle(StepGeom_Axis2Placement3d)::DownCast(transformation->TransformItem2());
    placement = gp_Trsf();
    if (from.IsNull() || to.IsNull())
        return false;
    // The kernel searches all items for these two, and an assembly has one item for each occurrence.
    const std::array<Handle(StepRepr_RepresentationItem), 2> ends{transformation->TransformItem1(),
                                                                  transformation->TransformItem2()};
    return m_actor.ComputeTransformation(from, to, reduced(relation->Rep1(), ends),
                                         reduced(relation->Rep2(), ends), m_process, placement);
}

const StepAssemblies::Details& StepAssemblies::details(const Handle(StepRepr_Representation) & representation)
{
    const auto [found, added] = m_details.try_emplace(representation.get());
    Details& details = found->second;
    if (!added)
        return details;
    for (int i = 1; i <= representation->NbItems(); ++i)
        details.items.insert(representation->ItemsValue(i).get());
    const Interface_Graph& graph = m_process->Graph();
    for (Interface_EntityIterator each = graph.Sharings(representation); each.More(); each.Next()) {
        const auto definition = Handle(StepShape_ShapeDefinitionRepresentation)::DownCast(each.Value());
        const Handle(StepRepr_PropertyDefinition) property =
            definition.IsNull() ? nullptr : definition->Definition().PropertyDefinition();
        if (property.IsNull())
            continue;
        const Product product = property->Definition().ProductDefinition();
        if (details.owner.IsNull() && definition->UsedRepresentation() == representation &&
            definition->DynamicType() == STANDARD_TYPE(StepShape_ShapeDefinitionRepresentation))
            details.owner = product;
        if (details.shown.IsNull() && property->IsKind(STANDARD_TYPE(StepRepr_ProductDefinitionShape)))
            details.shown = product;
    }
    return details;
}

Handle(StepRepr_Representation)
    StepAssemblies::reduced(const Handle(StepRepr_Representation) & representation,
                            std::span<const Handle(StepRepr_RepresentationItem)> items)
{
    const Details& all = details(representation);
    std::vector<Handle(StepRepr_RepresentationItem)> own;
    for (const Handle(StepRepr_RepresentationItem) & item : items)
        if (all.items.contains(item.get()))
            own.push_back(item);
    Handle(StepRepr_HArray1OfRepresentationItem) list;
    if (!own.empty())
        list = new StepRepr_HArray1OfRepresentationItem(1, static_cast<int>(own.size()));
    for (size_t i = 0; i < own.size(); ++i)
        list->SetValue(static_cast<int>(i) + 1, own[i]);
    Handle(StepRepr_Representation) reduced = new StepRepr_Representation;
    reduced->Init(representation->Name(), list, representation->ContextOfItems());
    return reduced;
}

} // namespace Vs::Translate
