#pragma once

#include "Server/Base/Event.h"
#include "Server/Base/StrongRef.h"
#include "Server/Geometry/BBox.h"

#include <cstdint>

namespace Vs::Scene {

/// How a camera projects; the numbers are those of the text commands and of the user's options.
enum EProjection {
    kParallelProjection = 1,
    kPerspectiveProjection = 2,
};

class Camera;

class CameraEvent : public Implements<CameraEvent, Event>
{
public:
    explicit CameraEvent(Camera* camera) : m_camera(camera) {}
    Camera* camera() const { return m_camera; }

private:
    Camera* m_camera;
};

class CameraEventSite : public EventSite
{
public:
    virtual void cameraChanged(CameraEvent* event) = 0;
};

/// Tells of every change of every camera.
class CameraEventSource : public EventSource<CameraEventSite>
{
public:
    static CameraEventSource* get();
    void fireCameraChanged(CameraEvent* event) { fire(&CameraEventSite::cameraChanged, event); }
};

/// Where a view is seen from. Lengths are millimetres, in world coordinates; right-handed.
///
/// `extentsWidth` and `extentsHeight` are the size of the rectangle around the target, at right angles to the
/// direction, that a viewport of any shape always shows whole. In a perspective they also say, together with
/// the distance from position to target, how wide the lens is.
///
/// Every accessor returns what was set last, to the last bit, so that a camera can be written down and set
/// again. What makes no sense (an up along the direction, clip planes that cut the model away) is mended when
/// the matrices are made, not where it is set. Values that are no finite numbers, or beyond 1e100, are
/// ignored. Main thread only.
class Camera : public Implements<Camera, SharedObject>
{
public:
    /// What the larger extent measures at distance 1 with the lens that a new perspective gets: an angle of
    /// 30 degrees.
    static constexpr float s_normalPersLens = 0.53589838f;

    /// Looks from the top, the front and the right at the origin, Z up, with a perspective.
    Camera();
    static StrongRef<Camera> make();

    const GkPoint3d& position() const { return m_position; }
    void position(const GkPoint3d& position);
    const GkPoint3d& target() const { return m_target; }
    void target(const GkPoint3d& target);
    const GkVector3d& up() const { return m_up; }
    void up(const GkVector3d& up);
    /// Distances from the position along the direction. Drawing moves both to where the model needs them.
    double clipNear() const { return m_clipNear; }
    void clipNear(double distance);
    double clipFar() const { return m_clipFar; }
    void clipFar(double distance);
    double extentsWidth() const { return m_extentsWidth; }
    void extentsWidth(double width);
    double extentsHeight() const { return m_extentsHeight; }
    void extentsHeight(double height);
    /// An EProjection; any other number is ignored.
    int projection() const { return m_projection; }
    void projection(int projection);
    /// Changes the projection and keeps the size of what stands at the target.
    void toggleProjection(EProjection projection);

    /// Length one, from position to target.
    [[nodiscard]] GkVector3d direction() const;
    /// Length one, to the right on the screen.
    [[nodiscard]] GkVector3d right() const;
    /// Length one, upwards on the screen: the part of `up` at right angles to the direction.
    [[nodiscard]] GkVector3d screenUp() const;
    [[nodiscard]] double distance() const { return m_position.distanceTo(m_target); }
    /// The angle in radians under which the larger of the extents is seen; 0 in a parallel projection.
    double perspectiveAngle() const;
    /// Changes the angle by moving the position, so that what stands at the target keeps its size.
    void perspectiveAngle(double radians);

    /// The point about which a passive orbit turns, if it is enabled.
    const GkPoint3d& pivot() const { return m_pivot; }
    void pivot(const GkPoint3d& pivot);
    bool pivotEnabled() const { return m_pivotEnabled; }
    void pivotEnabled(bool enabled) { m_pivotEnabled = enabled; }

    /// Turns the view about the target by a movement of the mouse in pixels, `dy` upwards: the model follows
    /// the mouse. Turns about the screen's own axes.
    void orbit(double dx, double dy);
    /// The same about the pivot.
    void orbitAroundPivot(double dx, double dy);
    /// Turns about `centre` by `pixels` of mouse movement: about the screen's horizontal axis if `vertical`,
    /// else about `axis`.
    void constrainedOrbit(double pixels, bool vertical, const GkVector3d& axis, const GkPoint3d& centre);
    /// Turns the camera about its direction, clockwise for the viewer (the picture turns the other way).
    void roll(double radians);
    /// The same about an axis along the direction through `centre`.
    void roll(double radians, const GkPoint3d& centre);
    /// Moves position and target.
    void dolly(const GkVector3d& shift);
    /// Makes what stands at the target `factor` times as large; a perspective comes nearer and keeps its
    /// lens. A factor of 0 or less is ignored, as is one that would leave the range where numbers stay exact.
    void zoom(double factor);
    /// Frames the box with a small margin, whatever the shape of the viewport, without turning the camera; a
    /// perspective keeps its lens. An empty box changes nothing; a mere point is brought to the centre.
    void fit(const BBox& box);
    /// Looks along `direction` from the old distance at the old target.
    void look(const GkVector3d& direction, const GkVector3d& up);

    /// World to camera coordinates: x to the right, y up, z towards the viewer.
    [[nodiscard]] GkMatrix3d viewMatrix() const;
    /// Everything of another camera but the pivot.
    void copyFrom(const Camera& other);

    /// Grows by at least one with every change; never shared with another camera's value.
    uint64_t revision() const { return m_revision; }

private:
    void set(double& field, double value);
    void turn(double radians, const GkVector3d& axis, const GkPoint3d& centre);
    void fitParallel(const BBox& box);
    void fitPerspective(const BBox& box);
    void changed();

    GkPoint3d m_position, m_target, m_pivot;
    GkVector3d m_up{0, 0, 1};
    double m_clipNear, m_clipFar;
    double m_extentsWidth, m_extentsHeight;
    int m_projection = kPerspectiveProjection;
    bool m_pivotEnabled = false;
    uint64_t m_revision = 0;
};

} // namespace Vs::Scene
