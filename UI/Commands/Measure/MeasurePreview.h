#pragma once

#include "Server/DataModel/Measure/MeasureTypes.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/GeometryNode.h"
#include "UI/Base/View/CanvasEvents.h"

#include <string>

namespace Vu::Commands {

/// The dimension of a measured distance or angle in the active view. It follows the camera, so that arrows
/// and lettering keep their size on screen, without measuring again.
class MeasurePreview : private Vs::Scene::CameraEventSite, private CanvasEventSite
{
public:
    explicit MeasurePreview(bool isDistance) : m_isDistance(isDistance) {}
    ~MeasurePreview() override;
    MeasurePreview(const MeasurePreview&) = delete;
    MeasurePreview& operator=(const MeasurePreview&) = delete;

    /// Shows the result, or nothing if it has no extent: coincident points, and angles without an arc.
    void show(const Vs::MeasureResult& result, const std::wstring& text);
    /// Changes the text of the same result; does nothing while nothing is shown.
    void text(const std::wstring& text);
    void clear();
    bool shown() const { return m_parent.get() != nullptr; }
    /// Turns its highlight on or off.
    void highlight(bool on);

private:
    void cameraChanged(Vs::Scene::CameraEvent* event) override;
    void canvasResized(CanvasEvent* event) override;
    bool hasExtent() const;
    void draw();
    void drawDistance();
    void drawAngle();

    bool m_isDistance;
    Vs::MeasureResult m_result;
    std::wstring m_text;
    Vs::StrongRef<Rendra::Graphics::InstanceNode> m_node;
    /// Its parent node; null while nothing is shown.
    Vs::StrongRef<Rendra::Graphics::GroupNode> m_parent;
};

} // namespace Vu::Commands
