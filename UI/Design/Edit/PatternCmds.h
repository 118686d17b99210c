#pragma once

#include "UI/Design/Edit/EditCmd.h"
#include "UI/Design/Edit/EditGeometry.h"

namespace Vu::Design {

/// Mirrors components at a plane perpendicular to one of the axes.
class MirrorCmd : public Vs::Implements<MirrorCmd, EditCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    void onMakeInputs(EditInputs& inputs) override;
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;
    bool onMakesGroup() const override { return true; }

private:
    SelectionCommandInput* m_components = nullptr;
    ListCommandInput* m_axis = nullptr;
    RealValueCommandInput* m_at = nullptr;
    BoolValueCommandInput* m_keep = nullptr;
};

/// Repeats components along one axis, or along two as a grid.
class LinearPatternCmd : public Vs::Implements<LinearPatternCmd, EditCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    void onMakeInputs(EditInputs& inputs) override;
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;
    bool onMakesGroup() const override { return true; }
    std::wstring onWhyInvalid() const override;
    void onInputChanged() override;

private:
    bool isGrid() const;

    SelectionCommandInput* m_components = nullptr;
    ListCommandInput* m_axis[2] = {};
    RealValueCommandInput* m_spacing[2] = {};
    IntegerValueCommandInput* m_count[2] = {};
};

/// Repeats components around an axis, evenly over an angle.
class CircularPatternCmd : public Vs::Implements<CircularPatternCmd, EditCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    void onMakeInputs(EditInputs& inputs) override;
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;
    bool onMakesGroup() const override { return true; }
    std::wstring onWhyInvalid() const override;
    void onInputChanged() override { m_centre.refresh(); }

private:
    SelectionCommandInput* m_components = nullptr;
    ListCommandInput* m_axis = nullptr;
    RealValueCommandInput* m_angle = nullptr;
    IntegerValueCommandInput* m_count = nullptr;
    CentreInputs m_centre;
};

} // namespace Vu::Design
