#include "UI/Design/Edit/ColourCmd.h"

#include "UI/Base/Command/Info.h"
#include "UI/Design/Localized.h"
#include "UI/Design/Resources.h"

namespace Vu::Design {

// clang-format off
constinit const EditRow ColourCmd::kRow = {
    .key = L"ColourCommand", .title = "Colour", .icon = &Resources::Colour, .tooltip = "Colour components, bodies, solids or faces"};
// clang-format on

void ColourCmd::onMakeInputs(EditInputs& inputs)
{
    using Vs::ESelectionType;
    m_objects = inputs.things(L"Objects", localized("EditObjects", "Objects"),
                              {ESelectionType::Component, ESelectionType::Body, ESelectionType::Face});
    m_colour = inputs.colour(L"Colour", localized("EditColour", "Colour"));
}

Vs::ModelEdit ColourCmd::onMakeEdit(const Vs::Asset&)
{
    return Vs::ColourEdit{pathsOf(*m_objects), ColourCommandInput::colourOf(m_colour->value())};
}

} // namespace Vu::Design
