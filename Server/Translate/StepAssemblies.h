#pragma once

#include <Message_ProgressScope.hxx>
#include <STEPControl_ActorRead.hxx>
#include <StepBasic_ProductDefinition.hxx>
#include <StepRepr_NextAssemblyUsageOccurrence.hxx>
#include <StepRepr_Representation.hxx>
#include <StepShape_ContextDependentShapeRepresentation.hxx>
#include <Transfer_TransientProcess.hxx>
#include <gp_Trsf.hxx>

#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vs::Translate {

/// The assemblies of one STEP file that is being transferred.
class StepAssemblies
{
public:
    using Product = Handle(StepBasic_ProductDefinition);

    /// The actor transfers single products; it must outlive this.
    StepAssemblies(STEPControl_ActorRead& actor, const Handle(Transfer_TransientProcess) & process);

    const Handle(Transfer_TransientProcess) & process() const { return m_process; }

    /// Transfers all products below this one, and binds the occurrences of all of them to their placed
    /// shapes. What is described in an unusual way, or has no shape, is left to the actor. Throws Unreadable
    /// if a product contains itself, or if there are more levels or occurrences than can be shown.
    void bindBelow(const Product& root, const Message_ProgressRange& range);

private:
    using Usage = Handle(StepRepr_NextAssemblyUsageOccurrence);

    struct Occurrence
    {
        Product product;
        gp_Trsf placement;
        bool moved = false, reversed = false;
    };

    /// What other parts of the file say about a representation, looked up once.
    struct Details
    {
        Product owner; ///< The one whose shape it is.
        Product shown; ///< The one transferred in its place; nearly always the same.
        std::unordered_set<const Standard_Transient*> items;
    };

    struct Level
    {
        Product product;
        std::vector<Usage> usages;
        size_t next = 0;
        std::optional<Occurrence> pending; ///< The occurrence whose product is being transferred.
        uint64_t parts = 0;                ///< How many there are in what has been bound so far.
    };

    Level enter(const Product& product);
    void leave(const Level& level);
    /// Continues with the usages; returns a product that must be transferred first, or null at their end.
    Product advance(Level& level);
    void bind(const Usage& usage, const Occurrence& occurrence);

    std::vector<Usage> usagesOf(const Product& product) const;
    std::optional<Occurrence> occurrence(const Usage& usage);
    bool reverses(const Handle(StepShape_ContextDependentShapeRepresentation) & placing, const Usage& usage);
    bool place(const Handle(StepRepr_RepresentationRelationship) & relation, gp_Trsf& placement);
    const Details& details(const Handle(StepRepr_Representation) & representation);
    /// The same representation, with only those of these items that are its own.
    Handle(StepRepr_Representation) reduced(const Handle(StepRepr_Representation) & representation,
                                            std::span<const Handle(StepRepr_RepresentationItem)> items);

    STEPControl_ActorRead& m_actor;
    Handle(Transfer_TransientProcess) m_process;
    int m_products = 0;
    std::unordered_map<const Standard_Transient*, Details> m_details;
    std::unordered_set<const Standard_Transient*> m_entered;
    std::unordered_map<const Standard_Transient*, uint64_t> m_parts; ///< In each product that has been left.
};

} // namespace Vs::Translate
