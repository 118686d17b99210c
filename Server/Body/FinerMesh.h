#pragma once

#include "Server/Body/BodyMesh.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

namespace Vs {

/// The finer forms that a body's mesh has for views that come near; they are made of the body's exact shape,
/// and have the same faces, edges and vertices. Views draw and search them in place of the mesh itself, which
/// remains what is measured, exported and saved.
class FinerMesh
{
public:
    /// Level 0 is the mesh itself; each further one deviates a quarter as much from the exact shape.
    static constexpr int kLevels = 5;

    FinerMesh() = default;
    virtual ~FinerMesh() = default;
    FinerMesh(const FinerMesh&) = delete;
    FinerMesh& operator=(const FinerMesh&) = delete;

    /// Makes the form of a level, from 1 to kLevels, of `mesh`. Null if there is none, or if `goOn` said no;
    /// it is asked from time to time. Takes long; any thread.
    [[nodiscard]] virtual std::shared_ptr<const BodyMesh>
    make(const std::weak_ptr<const BodyMesh>& mesh, int level, const std::function<bool()>& goOn) = 0;
    /// What `make` works with, to be held while it does and released on the main thread.
    [[nodiscard]] virtual std::shared_ptr<const void> source() const = 0;

    /// The chordalDeviation of `mesh`, computed once. Any thread.
    [[nodiscard]] double deviation(const BodyMesh& mesh);

    /// What views show now; null for the mesh itself. Changed on the main thread, while nothing is drawn.
    const std::shared_ptr<const BodyMesh>& shown() const { return m_shown; }
    void show(std::shared_ptr<const BodyMesh> finer);
    /// Grows whenever any body shows another form.
    static uint64_t revision();

private:
    std::shared_ptr<const BodyMesh> m_shown;
    std::atomic<double> m_deviation = -1;
};

/// The mesh together with its finer forms, which live as long as it does.
std::shared_ptr<const BodyMesh> withFinerMesh(std::shared_ptr<const BodyMesh> mesh,
                                              std::shared_ptr<FinerMesh> finer);
/// Those of a mesh; null for one that has no others, such as that of a body of triangles alone.
std::shared_ptr<FinerMesh> finerMeshOf(const std::shared_ptr<const BodyMesh>& mesh);
/// What views show of a body that has this mesh; null for null.
const std::shared_ptr<const BodyMesh>& shownMesh(const std::shared_ptr<const BodyMesh>& mesh);

/// How far the sides of triangles run below the curved surfaces that they stand for, in millimetres, as the
/// normals at their ends tell; 0 if all faces are flat.
[[nodiscard]] double chordalDeviation(const BodyMesh& mesh);

/// Whether `finer` can stand in for `mesh`: the same parts, between the same vertices.
[[nodiscard]] bool hasSameParts(const BodyMesh& mesh, const BodyMesh& finer);

} // namespace Vs
