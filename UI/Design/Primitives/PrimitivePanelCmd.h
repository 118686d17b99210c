#pragma once

#include "UI/Design/Edit/PlaceHandles.h"
#include "UI/Design/Edit/PreviewedCmd.h"
#include "UI/Design/Primitives/PrimitiveTable.h"

#include <deque>
#include <optional>
#include <vector>

namespace Vu::Design {

/// Adds a primitive whose sizes and position the user chooses in a panel, by handles, or by clicking a face,
/// on which it then stands. Once added, the part is selected and in view. A recording contains the line that
/// adds the same part.
class PrimitivePanelCmd : public Vs::Implements<PrimitivePanelCmd, PreviewedCmd>
{
public:
    /// The row must outlive the command.
    PrimitivePanelCmd(CommandDefinition* definition, CommandContext* context, const PrimitiveRow& row);

    void onBegin() override;
    void onPostActivate() override { onShown(); }
    void onDeactivate() override;
    void onEnd(ETerminationReason reason) override;
    /// Nothing can stand on the part that is just being created.
    bool onFilterSelection(const Vs::StrongRef<Vs::Selection>& selection,
                           const Vs::SelectionFilterContext* context) override;
    bool onArgumentsSayAll() const override { return true; }

protected:
    void onMakeInputs(EditInputs& inputs) override;
    OwnedRequest onMakeRequest(Vs::Asset& asset) override;
    void onDone(const Vs::Request& request, bool preview) override;
    std::wstring onWhyInvalid() const override;
    bool onPicksInsideBodies() const override;
    void onInputChanged() override;
    void onShown() override;

private:
    std::vector<double> sizes() const;
    /// What the position is relative to: the face, or the model.
    GkMatrix3d ground() const { return m_onFace.value_or(GkMatrix3d()); }
    GkVector3d shift() const;
    /// From the primitive's own coordinates to those of the base, without the offset.
    GkVector3d foot(const std::vector<double>& sizes) const;
    GkMatrix3d placement() const;
    /// Whether the part is in the left part of the view, where panels appear.
    bool isAtLeft() const;
    void dragPlace(const Manipulator::Drag& drag);
    void dragSize(size_t which, const Manipulator::Drag& drag);
    double gripPerSize(size_t which) const;

    const PrimitiveRow& m_row;
    SelectionCommandInput* m_face = nullptr;
    RealValueCommandInput* m_shift[3] = {};
    std::vector<RealValueCommandInput*> m_sizes;
    std::optional<GkMatrix3d> m_onFace;      ///< The frame on the chosen face, in the asset's coordinates.
    Vs::StrongRef<Vs::Selection> m_standsOn; ///< The face of m_onFace.
    std::string m_made;                      ///< The component of the preview, or the created one.

    PlaceHandles m_place;
    DraggedShift m_dragged;
    std::deque<PlaceHandles> m_grips; ///< One for each size.
    double m_from = 0;                ///< The size when a drag of its grip began.
    bool m_dragging = false;
};

} // namespace Vu::Design
