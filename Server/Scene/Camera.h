#pragma once

#include "Server/Base/Event.h"
#include "Server/Base/StrongRef.h"
#include "Server/Geometry/BBox.h"

#include <cstdint>
#include <memory>

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

/// Reports every change of every camera.
class CameraEventSource : public EventSource<CameraEventSite>
{
public:
    static CameraEventSource* get();
    void fireCameraChanged(CameraEvent* event) { fire(&CameraEventSite::cameraChanged, event); }
};

/// What a camera frames, for fits that need to know more about it than a box. Main thread only.
class CameraSubject
{
public:
    virtual ~CameraSubject() = default;

    /// The part of a canvas that nothing covers. Pixels; x to the right and y upwards from the middle of the
    /// canvas. A zero size means that there is no canvas to consider.
    struct Room
    {
        double width = 0, height = 0; ///< Of the whole canvas.
        double left = 0, bottom = 0, right = 0, top = 0;
        friend bool operator==(const Room&, const Room&) = default;
    };
    /// The free part in which something of this shape, width by height, becomes largest.
    [[nodiscard]] virtual Room roomFor(double aspect) const = 0;

    /// The point of the content of this box that lies farthest in a direction. False if that is not known, so
    /// that the corners of the box are used.
    [[nodiscard]] virtual bool outermost(const BBox& box, const GkVector3d& direction,
                                         GkPoint3d& point) const = 0;
};

/// A viewpoint. Lengths are millimetres, in world coordinates; right-handed.
///
/// `extentsWidth` and `extentsHeight` are the size of the rectangle around the target, perpendicular to the
/// direction, that a viewport of any shape always shows whole. In a perspective they also determine, together
/// with the distance from position to target, how wide the lens is.
///
/// Every accessor returns what was set last, to the last bit, so that a camera can be saved and restored.
/// What makes no sense (an up along the direction, clip planes that cut the model away) is corrected when the
/// matrices are made, not where it is set. Values that are not finite, or beyond 1e100, are ignored. Main
/// thread only.
class Camera : public Implements<Camera, SharedObject>
{
public:
    /// The larger extent at distance 1 with the default lens of a perspective: an angle of 30 degrees.
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
    /// Changes the projection and keeps the size of what is at the target.
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
    /// Changes the angle by moving the position, so that what is at the target keeps its size.
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
    /// Turns the view about `centre` by `pixels` of mouse movement: about the screen's horizontal axis if
    /// `vertical`, otherwise about `axis`. A vertical turn stops before it would turn the upright direction
    /// upside down: the direction that is up in the world (`upright`), or, if that isn't known or lies across
    /// the turn, `axis`.
    void constrainedOrbit(double pixels, bool vertical, const GkVector3d& axis, const GkPoint3d& centre);
    /// The up direction of the world, for vertical turns; zero, the default, if there is none.
    void upright(const GkVector3d& up);
    /// Turns the camera about its direction, clockwise for the viewer (the picture turns the other way).
    void roll(double radians);
    /// The same about an axis along the direction through `centre`.
    void roll(double radians, const GkPoint3d& centre);
    /// Moves position and target.
    void dolly(const GkVector3d& shift);
    /// Makes what is at the target `factor` times as large; a perspective comes nearer and keeps its lens. A
    /// factor of 0 or less is ignored, as is one that would leave the range in which numbers are exact.
    void zoom(double factor);
    /// Moves the target to `depth` from the position along the direction, so that turns and zooms are about
    /// what is seen there. The picture stays the same: the extents of a perspective change with the distance,
    /// a parallel projection moves its position along. A depth at or behind the position of a perspective, or
    /// one that would leave the range in which numbers are exact, is ignored.
    void slideTarget(double depth);
    /// Frames the box with a small margin, whatever the shape of the viewport, without turning the camera; a
    /// perspective keeps its lens. With a subject, what is in the box is framed, in the part of the canvas
    /// that is free. An empty box changes nothing; a mere point is brought to the centre. The pivot is
    /// dropped: it was chosen for a different view of the model.
    void fit(const BBox& box);
    /// The revision in which the last fit left it; 0 before the first one. The result of a fit depends on the
    /// canvas, so it isn't the same everywhere.
    uint64_t fitRevision() const { return m_fitRevision; }
    /// Consulted by `fit`; ignored once it is gone.
    void subject(std::weak_ptr<const CameraSubject> subject) { m_subject = std::move(subject); }
    /// Looks along `direction` from the old distance at the old target.
    void look(const GkVector3d& direction, const GkVector3d& up);

    /// World to camera coordinates: x to the right, y up, z towards the viewer.
    [[nodiscard]] GkMatrix3d viewMatrix() const;
    /// Copies everything of another camera except the pivot, the subject and the upright direction.
    void copyFrom(const Camera& other);

    /// Grows by at least one with every change; never equal to another camera's value.
    uint64_t revision() const { return m_revision; }

private:
    void set(double& field, double value);
    void turn(double radians, const GkVector3d& axis, const GkPoint3d& centre);
    double withinPoles(double radians, const GkVector3d& axis) const;
    void changed();

    GkPoint3d m_position, m_target, m_pivot;
    GkVector3d m_up{0, 0, 1}, m_upright;
    double m_clipNear, m_clipFar;
    double m_extentsWidth, m_extentsHeight;
    int m_projection = kPerspectiveProjection;
    bool m_pivotEnabled = false;
    uint64_t m_revision = 0, m_fitRevision = 0;
    std::weak_ptr<const CameraSubject> m_subject;
};

} // namespace Vs::Scene
