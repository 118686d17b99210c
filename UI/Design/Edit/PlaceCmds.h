#pragma once

#include "UI/Design/Edit/EditCmd.h"

namespace Vu::Design {

/// Moves components along the model's axes.
class MoveCmd : public Vs::Implements<MoveCmd, EditCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    void onMakeInputs(EditInputs& inputs) override;
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;

    GkMatrix3d motion() const;
    SelectionCommandInput* m_components = nullptr;

private:
    RealValueCommandInput* m_dx = nullptr;
    RealValueCommandInput* m_dy = nullptr;
    RealValueCommandInput* m_dz = nullptr;
};

/// Puts one more of each component as far away from it as the inputs say.
class CopyCmd : public Vs::Implements<CopyCmd, MoveCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;
};

/// Turns components about a line along one of the model's axes, through the middle of what is chosen, the
/// model's origin or any point.
class RotateCmd : public Vs::Implements<RotateCmd, EditCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    void onMakeInputs(EditInputs& inputs) override;
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;
    void onInputChanged() override;

private:
    GkPoint3d centre(const Vs::Asset& asset) const;

    SelectionCommandInput* m_components = nullptr;
    ListCommandInput* m_axis = nullptr;
    RealValueCommandInput* m_angle = nullptr;
    ListCommandInput* m_about = nullptr;
    RealValueCommandInput* m_point[3] = {};
};

} // namespace Vu::Design
