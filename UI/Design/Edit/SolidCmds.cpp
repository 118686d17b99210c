#include "UI/Design/Edit/SolidCmds.h"

#include "UI/Design/Localized.h"
#include "UI/Design/Resources.h"

namespace Vu::Design {

// clang-format off
constinit const EditRow JoinCmd::kRow = {
    .key = L"JoinCommand", .title = "Join", .icon = &Resources::Join, .tooltip = "Make one body out of several"};

constinit const EditRow SubtractCmd::kRow = {
    .key = L"SubtractCommand", .title = "Subtract", .icon = &Resources::Cut, .tooltip = "Take bodies away from another one"};

constinit const EditRow IntersectCmd::kRow = {
    .key = L"IntersectCommand", .title = "Intersect", .icon = &Resources::Intersect, .tooltip = "Keep only what a body has in common with others"};

constinit const EditRow FilletCmd::kRow = {
    .key = L"FilletCommand", .title = "Fillet", .icon = &Resources::Fillet, .tooltip = "Round edges"};

constinit const EditRow ChamferCmd::kRow = {
    .key = L"ChamferCommand", .title = "Chamfer", .icon = &Resources::Chamfer, .tooltip = "Cut edges off"};
// clang-format on

namespace {

constexpr double kOrdinarySize = 1; // mm

} // namespace

void CombineCmd::onMakeInputs(EditInputs& inputs)
{
    m_target =
        inputs.things(L"Target", localized("EditTarget", "Target"), {Vs::ESelectionType::Component}, true);
    m_tools = inputs.things(L"Tools", localized("EditTools", "Tools"), {Vs::ESelectionType::Component});
    m_keep = inputs.choice(L"Keep", localized("EditKeepTools", "Keep tools"), false);
}

Vs::ModelEdit CombineCmd::onMakeEdit(const Vs::Asset&)
{
    return Vs::CombineEdit{kind(), componentsOf(*m_target).front(), componentsOf(*m_tools), m_keep->value()};
}

void FilletCmd::onMakeInputs(EditInputs& inputs)
{
    m_edges = inputs.things(L"Edges", localized("EditEdges", "Edges"), {Vs::ESelectionType::Edge});
    m_size = inputs.length(L"Radius", localized("EditRadius", "Radius"), kOrdinarySize);
    m_size->minimumValue(true, 0, false);
}

Vs::ModelEdit FilletCmd::onMakeEdit(const Vs::Asset&)
{
    return Vs::BlendEdit{Vs::BlendEdit::Kind::Fillet, pathsOf(*m_edges), m_size->value()};
}

void ChamferCmd::onMakeInputs(EditInputs& inputs)
{
    m_edges = inputs.things(L"Edges", localized("EditEdges", "Edges"), {Vs::ESelectionType::Edge});
    m_size = inputs.length(L"Distance", localized("EditDistance", "Distance"), kOrdinarySize);
    m_size->minimumValue(true, 0, false);
}

Vs::ModelEdit ChamferCmd::onMakeEdit(const Vs::Asset&)
{
    return Vs::BlendEdit{Vs::BlendEdit::Kind::Chamfer, pathsOf(*m_edges), m_size->value()};
}

} // namespace Vu::Design
