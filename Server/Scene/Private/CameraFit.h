#pragma once

#include "Server/Scene/Camera.h"

#include <vector>

namespace Vs::Scene {

/// The result of Camera::fit.
struct Fitted
{
    GkPoint3d target;
    double distance = 0; ///< Of the position from it, along the direction.
    double width = 0, height = 0;
};

/// Finds the position from which a camera of a given direction frames the content of a box.
class CameraFit
{
public:
    struct Look
    {
        GkVector3d across, upward, along; ///< Of the camera, each of length one.
        bool perspective = false;
        double lens = 0; ///< The larger extent at distance 1; 0 for the normal one.
    };

    /// The box is neither empty nor a mere point. The subject may be null. Keeps references to all of them.
    CameraFit(const Look& look, const BBox& box, const CameraSubject* subject);

    [[nodiscard]] Fitted find();

private:
    /// Where in the canvas the content should be.
    struct Frame
    {
        double scale = 1;  ///< Of the extents, so that the content fills only the free part.
        GkVector3d offset; ///< Of its middle (x and y), as parts of the larger extent.
    };

    Fitted framed(const Frame& frame) const;
    Fitted parallel(const Frame& frame) const;
    Fitted perspective(const Frame& frame) const;
    double middle(double GkVector3d::*axis, double depth, double aim) const;
    Frame frameFor(const Fitted& fitted) const;
    bool protrudes(const Fitted& fitted);
    bool ask(const GkVector3d& direction, GkVector3d& found) const;

    const Look& m_look;
    const BBox& m_box;
    const CameraSubject* m_subject;
    GkPoint3d m_centre;
    double m_lens;
    /// From the centre: x across, y upwards, z along.
    std::vector<GkVector3d> m_points;
    bool m_cornersAlone = false;
};

} // namespace Vs::Scene
