#pragma once

#include "Server/Geometry/GkVector3d.h"
#include "Server/Scene/Node.h"

#include <optional>
#include <string>
#include <vector>

namespace Vu {

/// A cube with bevelled edges and the names of its sides: the 26 places from which a model is looked at. Its
/// half length is 1; up is Z and the front is seen from -Y.
class OrbiconCube
{
public:
    /// The nodes hang below `parent`, which must outlive the cube.
    explicit OrbiconCube(Rendra::Graphics::GroupNode* parent);

    /// Turns the cube: `up` and `front`, both of length one and at right angles, point out of its top and its
    /// front.
    void orientation(const GkVector3d& up, const GkVector3d& front);

    static constexpr size_t kZones = 26;
    /// Out of the zone: each component is -1, 0 or 1; a face has one that isn't 0, an edge two, a corner
    /// three.
    [[nodiscard]] static const GkVector3d& direction(size_t zone);
    /// The zone where a ray meets the cube first; the ray is in the parent's own coordinates.
    [[nodiscard]] std::optional<size_t> zoneAt(const GkPoint3d& start, const GkVector3d& along) const;

    /// The highlighted zone; none for none.
    void highlight(std::optional<size_t> zone);
    std::optional<size_t> highlighted() const { return m_highlighted; }

    /// Half the size of the box in which the cube turns.
    static constexpr double kReach = 1.5;

private:
    /// In the middle of a side; the letters stand on the line across `upward`.
    void addLabel(const GkVector3d& side, const GkVector3d& upward, const std::wstring& text);
    void paint(size_t zone);

    Vs::StrongRef<Rendra::Graphics::GroupNode> m_node;
    std::vector<Vs::StrongRef<Rendra::Graphics::BodyNode>> m_zones;
    std::optional<size_t> m_highlighted;
};

} // namespace Vu
