#pragma once

#include "Server/DataModel/Selection/ObjectPath.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace Vs {

/// What became of the faces, edges and vertices of a body that got another shape, by their numbers
/// (ObjectPath::index). A value.
class PartSuccessors
{
public:
    using Numbers = std::vector<uint32_t>;
    static constexpr uint32_t kNone = UINT32_MAX;

    /// Of a shape whose parts are all there still, under the same numbers.
    PartSuccessors() = default;
    /// Each list gives for every part its successor; kNone if there isn't exactly one.
    PartSuccessors(Numbers faces, Numbers edges, Numbers vertices)
        : m_same(false), m_lists{std::move(faces), std::move(edges), std::move(vertices)}
    {
    }

    /// Nothing if the part has no successor, or several.
    std::optional<uint32_t> of(ObjectPath::Leaf leaf, uint32_t index) const;
    /// What the parts of the later shape were before; nothing where several became one.
    PartSuccessors inverse() const;
    /// What becomes of the parts by this and then by `next`.
    PartSuccessors followedBy(const PartSuccessors& next) const;

private:
    bool m_same = true;
    Numbers m_lists[3]; ///< Faces, edges, vertices.
};

} // namespace Vs
