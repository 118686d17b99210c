#pragma once

#include "UI/Design/Edit/EditCmd.h"

namespace Vu::Design {

/// Gives components, bodies and faces a colour of their own, or removes it.
class ColourCmd : public Vs::Implements<ColourCmd, EditCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    void onMakeInputs(EditInputs& inputs) override;
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;

private:
    SelectionCommandInput* m_objects = nullptr;
    ColourCommandInput* m_colour = nullptr;
};

} // namespace Vu::Design
