#pragma once

#include "UI/Design/Edit/EditCmd.h"
#include "UI/Design/Edit/EditGeometry.h"
#include "UI/Design/Edit/PlaceHandles.h"

namespace Vu::Design {

/// Moves components along the model's axes.
class MoveCmd : public Vs::Implements<MoveCmd, EditCmd>
{
public:
    static const EditRow kRow;
    MoveCmd(CommandDefinition* definition, CommandContext* context);

    void onPostActivate() override { onShown(); }
    void onDeactivate() override { m_handles.hide(); }

protected:
    void onMakeInputs(EditInputs& inputs) override;
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;
    void onShown() override;

    GkMatrix3d motion() const;
    SelectionCommandInput* m_components = nullptr;

private:
    void drag(const Manipulator::Drag& drag);

    RealValueCommandInput* m_shift[3] = {}; ///< Along x, y and z.
    PlaceHandles m_handles;
    std::optional<GkPoint3d> m_middle; ///< Of the components at their initial position.
    DraggedShift m_dragged;
};

/// Copies each component once, offset as the inputs say.
class CopyCmd : public Vs::Implements<CopyCmd, MoveCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;
};

/// Rotates components about a line parallel to one of the model's axes, through the middle of the selection,
/// the model's origin or any point.
class RotateCmd : public Vs::Implements<RotateCmd, EditCmd>
{
public:
    static const EditRow kRow;
    RotateCmd(CommandDefinition* definition, CommandContext* context);

    void onPostActivate() override { onShown(); }
    void onDeactivate() override { m_handles.hide(); }

protected:
    void onMakeInputs(EditInputs& inputs) override;
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;
    void onInputChanged() override { m_about.refresh(); }
    void onShown() override;

private:
    void drag(const Manipulator::Drag& drag);

    PlaceHandles m_handles;
    std::optional<GkPoint3d> m_centre; ///< Of the change being shown.
    double m_from = 0;                 ///< The angle when a drag began.
    bool m_dragging = false;

    SelectionCommandInput* m_components = nullptr;
    ListCommandInput* m_axis = nullptr;
    RealValueCommandInput* m_angle = nullptr;
    CentreInputs m_about;
};

} // namespace Vu::Design
