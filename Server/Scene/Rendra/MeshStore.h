#pragma once

#include "Server/Body/BodyMesh.h"

#include <epoxy/gl.h>
#include <future>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Rendra {

/// Locations of the vertex attributes; the shaders use the same numbers.
enum Attribute : GLuint {
    kPosition,
    kNormal,
    kEdgeLength = kNormal, ///< Edges have no normals.
    kFaceColour,
    kRow0,
    kRow1,
    kRow2,
    kInstanceColour,
    kInstanceFlags,
};

/// A mesh on the GPU.
struct GlMesh
{
    GLuint faceArray = 0, edgeArray = 0; ///< Vertex arrays; the attributes of instances are set at each draw.
    GLuint vertices = 0, edgeVertices = 0, indices = 0, edgeIndices = 0;
    GLsizei indexCount = 0, edgeIndexCount = 0;
    GLsizei sharpIndexCount = 0; ///< How many of the edges' indices come before those of the tangent edges.
    GLenum indexType = GL_UNSIGNED_INT, edgeIndexType = GL_UNSIGNED_INT; ///< Short ones if they suffice.
    /// Neighbouring triangles of one finish.
    struct Run
    {
        GLsizei first, count; ///< Of indices.
        Vs::Finish finish;
    };
    std::vector<Run> runs; ///< All triangles, in their order; one run if no face has a material.
    bool closed = false;   ///< Its back sides are never seen; see isClosedAndOutward.
    std::weak_ptr<const Vs::BodyMesh> source;
};

/// A mesh with fewer triangles for pictures of a moving view, or in which the body is small.
struct CoarseLevel
{
    std::future<std::shared_ptr<const Vs::BodyMesh>> coming; ///< While it is being made.
    std::shared_ptr<const Vs::BodyMesh> mesh;                ///< Null if none is worthwhile.
    GlMesh gl;
};

/// Meshes uploaded to the GPU, each one once.
class MeshStore
{
public:
    /// Uploads the mesh at the first call; counts in `uploads`.
    const GlMesh& get(const std::shared_ptr<const Vs::BodyMesh>& mesh, uint64_t& uploads);
    /// Which of its forms with fewer triangles; all but the first are for pictures that stand still, and of
    /// closed bodies alone.
    enum class Form {
        Coarse,   ///< See coarseMesh.
        Smoothed, ///< See smoothedMesh.
        Reduced,  ///< See reducedMesh; its deviation is that part of the longest side.
    };
    /// A coarser form of the mesh, with that many cells along its longest side (a power of two), or the mesh
    /// itself until there is one: those of large meshes are made in parallel with the drawing.
    const GlMesh& coarser(const std::shared_ptr<const Vs::BodyMesh>& mesh, Form form, int cells,
                          uint64_t& uploads);
    /// Frees what belongs to meshes that are gone.
    void collect();
    void release();
    /// The memory of all meshes, including coarse ones, as reported by the driver.
    uint64_t bytes() const;

private:
    void upload(GlMesh& target, const Vs::BodyMesh& mesh);
    static void free(GlMesh& mesh);

    struct Entry
    {
        GlMesh gl;
        std::map<std::pair<int, Form>, CoarseLevel> levels; ///< By their cells and forms.
    };
    void free(Entry& entry);

    std::unordered_map<const Vs::BodyMesh*, Entry> m_meshes;
    int m_coming = 0; ///< How many levels are being made.
};

} // namespace Rendra
