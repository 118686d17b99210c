#pragma once

#include "UI/Base/Session/SelectionCommandInput.h"

#include <memory>

namespace Vu {

class RubberBand;

/// What an input does with the mouse in the canvas, while it takes the clicks: lights what it would pick,
/// picks it, and draws rubber bands.
class SelectionPointer : public MouseEventSite
{
public:
    explicit SelectionPointer(SelectionCommandInput& input);
    ~SelectionPointer() override;

    void mouseMove(MouseEvent* event) override;
    void mouseLeave(GraphicsCanvas* canvas) override;
    void mouseDown(MouseEvent* event) override;
    void mouseDragBegin(MouseEvent* event) override;
    void mouseDrag(MouseEvent* event) override;
    void mouseDragEnd(MouseEvent* event) override;
    void mouseUp(MouseEvent* event) override;
    /// Cancels the rubber band being drawn; false if there is none.
    bool giveUp();

private:
    /// Lights what the pointer is at, null for nothing, and tells of it; false if that is lit already.
    bool pointAt(const Vs::StrongRef<Vs::Selection>& selection);

    SelectionCommandInput& m_input;
    std::unique_ptr<RubberBand> m_band;
    bool m_pointing = false; ///< Was told that the pointer is at something.
    bool m_pressed = false;  ///< The button went down while the input was current.
    bool m_dragged = false;  ///< The button that is down has dragged, so that its release is no click.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
