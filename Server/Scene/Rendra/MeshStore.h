#pragma once

#include "Server/Body/BodyMesh.h"

#include <epoxy/gl.h>
#include <memory>
#include <unordered_map>

namespace Rendra {

/// Places of the vertex attributes; the shaders name the same numbers.
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

/// A mesh as the graphics unit has it.
struct GlMesh
{
    GLuint faceArray = 0, edgeArray = 0; ///< Vertex arrays; the attributes of instances are set at each draw.
    GLuint vertices = 0, edgeVertices = 0, indices = 0, edgeIndices = 0;
    GLsizei indexCount = 0, edgeIndexCount = 0;
    GLenum indexType = GL_UNSIGNED_INT, edgeIndexType = GL_UNSIGNED_INT; ///< Short ones where they suffice.
    size_t bytes = 0;    ///< What the graphics unit keeps for it.
    bool closed = false; ///< Its back sides are never seen; see isClosedAndOutward.
    std::weak_ptr<const Vs::BodyMesh> source;
};

/// Meshes that were sent to the graphics unit, each one once.
class MeshStore
{
public:
    /// Sends the mesh at the first call; counts in `uploads`.
    const GlMesh& get(const std::shared_ptr<const Vs::BodyMesh>& mesh, uint64_t& uploads);
    /// Frees what belongs to meshes that are gone.
    void collect();
    void release();
    void abandon() { m_meshes.clear(); }

private:
    void upload(GlMesh& target, const Vs::BodyMesh& mesh);
    static void free(GlMesh& mesh);

    std::unordered_map<const Vs::BodyMesh*, GlMesh> m_meshes;
};

} // namespace Rendra
