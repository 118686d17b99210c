#include "Server/Scene/Rendra/MeshStore.h"

#include "Server/Body/TangentEdges.h"
#include "Server/Scene/Rendra/BufferOffset.h"
#include "Server/Scene/Rendra/CoarseMesh.h"
#include "Server/Scene/Rendra/MeshShape.h"
#include "Server/Scene/Rendra/ReducedMesh.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <utility>
#include <vector>

namespace Rendra {

namespace {

/// Meshes with at most this many triangles are simplified while a picture waits; that takes less time than
/// the picture.
constexpr size_t kCoarsenedAtOnce = 4000;
/// How many others are simplified at a time.
constexpr int kMostComing = 2;

std::shared_ptr<const Vs::BodyMesh> reducedBy(const Vs::BodyMesh& mesh, int cells)
{
    const GkVector3d size = mesh.bounds.high() - mesh.bounds.low();
    return reducedMesh(mesh, std::max({size.x, size.y, size.z}) / cells);
}

struct Vertex
{
    float position[3];
    uint32_t normal; ///< Three signed numbers of ten bits.
    uint8_t colour[4];
};

uint32_t packNormal(const float* n)
{
    uint32_t packed = 0;
    for (int i = 0; i < 3; ++i) {
        const int value = int(std::lround(std::clamp(n[i], -1.0f, 1.0f) * 511));
        packed |= (uint32_t(value) & 1023u) << (10 * i);
    }
    return packed;
}

uint8_t eightBits(float linear, bool linearToScreen)
{
    const float value = std::clamp(linear, 0.0f, 1.0f);
    return uint8_t(std::lround(255 * (linearToScreen ? std::pow(value, 1 / 2.2f) : value)));
}

std::vector<Vertex> plainVertices(const Vs::BodyMesh& mesh)
{
    const size_t count = mesh.positions.size() / 3;
    std::vector<Vertex> vertices(count);
    const bool hasNormals = mesh.normals.size() == mesh.positions.size();
    for (size_t i = 0; i < count; ++i) {
        std::memcpy(vertices[i].position, &mesh.positions[3 * i], sizeof vertices[i].position);
        vertices[i].normal = hasNormals ? packNormal(&mesh.normals[3 * i]) : 0;
        std::memset(vertices[i].colour, 0, sizeof vertices[i].colour);
    }
    return vertices;
}

// Colours belong to vertices, so a vertex shared by faces of different colours is duplicated.
void colourFaces(const Vs::BodyMesh& mesh, std::vector<Vertex>& vertices, std::vector<uint32_t>& triangles)
{
    constexpr int32_t kUnused = -2;
    std::vector<int32_t> colourOf(vertices.size(), kUnused);
    std::map<std::pair<uint32_t, int32_t>, uint32_t> doubles;
    for (const Vs::BodyMesh::Face& face : mesh.faces) {
        const int32_t colour =
            face.colour >= 0 && size_t(face.colour) < mesh.colours.size() ? face.colour : -1;
        const size_t end = std::min(triangles.size(), (size_t(face.firstTriangle) + face.triangleCount) * 3);
        for (size_t i = size_t(face.firstTriangle) * 3; i < end; ++i) {
            uint32_t vertex = triangles[i];
            if (colourOf[vertex] != kUnused && colourOf[vertex] != colour) {
                const auto [found, isNew] = doubles.try_emplace({vertex, colour}, uint32_t(vertices.size()));
                if (isNew) {
                    vertices.push_back(vertices[vertex]);
                    colourOf.push_back(kUnused);
                }
                vertex = triangles[i] = found->second;
            }
            if (colourOf[vertex] != kUnused)
                continue;
            colourOf[vertex] = colour;
            uint8_t(&target)[4] = vertices[vertex].colour;
            std::memset(target, 0, sizeof target);
            if (colour < 0)
                continue;
            const Vs::Colour& own = mesh.colours[size_t(colour)];
            target[0] = eightBits(own.r, true);
            target[1] = eightBits(own.g, true);
            target[2] = eightBits(own.b, true);
            target[3] = std::max<uint8_t>(1, eightBits(own.a, false)); // zero means none
        }
    }
}

std::vector<GlMesh::Run> runsOf(const Vs::BodyMesh& mesh)
{
    std::vector<GlMesh::Run> runs;
    if (mesh.finishes.empty() || mesh.faces.empty())
        return {{0, GLsizei(mesh.triangles.size()), {}}};
    for (const Vs::BodyMesh::Face& face : mesh.faces) {
        const Vs::Finish finish = mesh.finishOf(face);
        const auto count = GLsizei(face.triangleCount * 3);
        if (!runs.empty() && runs.back().finish == finish)
            runs.back().count += count;
        else
            runs.push_back({GLsizei(face.firstTriangle * 3), count, finish});
    }
    return runs;
}

/// x, y, z, and how far along its polyline the point lies.
std::vector<float> edgeVertices(const Vs::BodyMesh& mesh)
{
    std::vector<float> vertices;
    vertices.reserve(mesh.edgePoints.size() / 3 * 4);
    const auto at = [&](size_t point) { return &mesh.edgePoints[3 * point]; };
    size_t line = 0;
    double along = 0;
    for (size_t point = 0; point < mesh.edgePoints.size() / 3; ++point) {
        while (line < mesh.edgeStarts.size() && mesh.edgeStarts[line] < point)
            ++line;
        const bool first = point == 0 || (line < mesh.edgeStarts.size() && mesh.edgeStarts[line] == point);
        along = first ? 0
                      : along + std::hypot(double(at(point)[0]) - at(point - 1)[0],
                                           double(at(point)[1]) - at(point - 1)[1],
                                           double(at(point)[2]) - at(point - 1)[2]);
        vertices.insert(vertices.end(), {at(point)[0], at(point)[1], at(point)[2], float(along)});
    }
    return vertices;
}

/// Tangent edges last; `sharp` becomes how many come before them.
std::vector<uint32_t> edgeSegments(const Vs::BodyMesh& mesh, size_t& sharp)
{
    std::vector<uint32_t> segments, last;
    segments.reserve(mesh.edgePoints.size() / 3 * 2);
    const std::vector<bool> tangent = tangentEdges(mesh);
    for (size_t i = 0; i + 1 < mesh.edgeStarts.size(); ++i)
        for (uint32_t point = mesh.edgeStarts[i]; point + 1 < mesh.edgeStarts[i + 1]; ++point) {
            std::vector<uint32_t>& those = tangent[i] ? last : segments;
            those.push_back(point);
            those.push_back(point + 1);
        }
    sharp = segments.size();
    segments.insert(segments.end(), last.begin(), last.end());
    return segments;
}

template <class T>
GLuint buffer(GLenum target, const std::vector<T>& content)
{
    GLuint name = 0;
    glGenBuffers(1, &name);
    glBindBuffer(target, name);
    glBufferData(target, GLsizeiptr(content.size() * sizeof(T)), content.data(), GL_STATIC_DRAW);
    return name;
}

/// Uploads indices below `vertices` in the shortest type that holds them.
GLuint indexBuffer(const std::vector<uint32_t>& indices, size_t vertices, GLenum& type)
{
    type = vertices <= 0x10000 ? GL_UNSIGNED_SHORT : GL_UNSIGNED_INT;
    if (type == GL_UNSIGNED_INT)
        return buffer(GL_ELEMENT_ARRAY_BUFFER, indices);
    return buffer(GL_ELEMENT_ARRAY_BUFFER, std::vector<uint16_t>(indices.begin(), indices.end()));
}

/// Uploads the vertices; a body whose faces have no colours omits that attribute, and uses the constant value
/// that means none (see Renderer::render).
GLuint vertexBuffer(const std::vector<Vertex>& vertices, bool coloured)
{
    GLuint name = 0;
    GLsizei stride = sizeof(Vertex);
    if (coloured) {
        name = buffer(GL_ARRAY_BUFFER, vertices);
        glVertexAttribPointer(kFaceColour, 4, GL_UNSIGNED_BYTE, GL_TRUE, stride,
                              bufferOffset(offsetof(Vertex, colour)));
        glEnableVertexAttribArray(kFaceColour);
    } else {
        static_assert(offsetof(Vertex, colour) == 16);
        stride = offsetof(Vertex, colour);
        std::vector<uint32_t> plain(vertices.size() * 4);
        for (size_t i = 0; i < vertices.size(); ++i)
            std::memcpy(&plain[4 * i], &vertices[i], offsetof(Vertex, colour));
        name = buffer(GL_ARRAY_BUFFER, plain);
    }
    glVertexAttribPointer(kPosition, 3, GL_FLOAT, GL_FALSE, stride, bufferOffset(offsetof(Vertex, position)));
    glVertexAttribPointer(kNormal, 4, GL_INT_2_10_10_10_REV, GL_TRUE, stride,
                          bufferOffset(offsetof(Vertex, normal)));
    glEnableVertexAttribArray(kPosition);
    glEnableVertexAttribArray(kNormal);
    return name;
}

void enableInstanceAttributes()
{
    for (GLuint attribute = kRow0; attribute <= kInstanceFlags; ++attribute) {
        glEnableVertexAttribArray(attribute);
        glVertexAttribDivisor(attribute, 1);
    }
}

uint64_t bytesOf(const GlMesh& mesh)
{
    uint64_t sum = 0;
    for (const GLuint name : {mesh.vertices, mesh.indices, mesh.edgeVertices, mesh.edgeIndices}) {
        GLint64 size = 0;
        glBindBuffer(GL_COPY_READ_BUFFER, name);
        if (name)
            glGetBufferParameteri64v(GL_COPY_READ_BUFFER, GL_BUFFER_SIZE, &size);
        sum += uint64_t(size);
    }
    glBindBuffer(GL_COPY_READ_BUFFER, 0);
    return sum;
}

} // namespace

uint64_t MeshStore::bytes() const
{
    uint64_t sum = 0;
    for (const auto& [mesh, entry] : m_meshes) {
        sum += bytesOf(entry.gl);
        for (const auto& [cells, level] : entry.levels)
            sum += bytesOf(level.gl);
    }
    return sum;
}

const GlMesh& MeshStore::get(const std::shared_ptr<const Vs::BodyMesh>& mesh, uint64_t& uploads)
{
    Entry& entry = m_meshes[mesh.get()];
    if (entry.gl.faceArray && !entry.gl.source.expired())
        return entry.gl;
    // A new mesh may be at the address of a freed one.
    free(entry);
    upload(entry.gl, *mesh);
    entry.gl.source = mesh;
    ++uploads;
    return entry.gl;
}

const GlMesh& MeshStore::coarser(const std::shared_ptr<const Vs::BodyMesh>& mesh, Form form, int cells,
                                 uint64_t& uploads)
{
    const GlMesh& whole = get(mesh, uploads);
    if (form != Form::Coarse && !whole.closed)
        return whole;
    const auto make = form == Form::Coarse ? coarseMesh : form == Form::Smoothed ? smoothedMesh : reducedBy;
    Entry& entry = m_meshes[mesh.get()];
    const auto [found, isNew] = entry.levels.try_emplace({cells, form});
    CoarseLevel& level = found->second;
    if (isNew) {
        if (mesh->triangles.size() / 3 <= kCoarsenedAtOnce) {
            level.mesh = make(*mesh, cells);
        } else if (m_coming < kMostComing) {
            ++m_coming;
            level.coming = std::async(std::launch::async, [=] { return make(*mesh, cells); });
        } else {
            entry.levels.erase(found); // asked again with the next picture
            return whole;
        }
    }
    if (level.coming.valid()) {
        if (level.coming.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
            return whole;
        level.mesh = level.coming.get();
        --m_coming;
    }
    if (!level.mesh)
        return whole;
    if (!level.gl.faceArray) {
        upload(level.gl, *level.mesh);
        ++uploads;
    }
    return level.gl;
}

void MeshStore::upload(GlMesh& target, const Vs::BodyMesh& mesh)
{
    std::vector<Vertex> vertices = plainVertices(mesh);
    std::vector<uint32_t> triangles = mesh.triangles;
    if (!mesh.colours.empty())
        colourFaces(mesh, vertices, triangles);
    glGenVertexArrays(1, &target.faceArray);
    glBindVertexArray(target.faceArray);
    target.vertices = vertexBuffer(vertices, !mesh.colours.empty());
    enableInstanceAttributes();
    target.indices = indexBuffer(triangles, vertices.size(), target.indexType);
    target.indexCount = GLsizei(triangles.size());
    target.runs = runsOf(mesh);
    target.closed = isClosedAndOutward(mesh);

    size_t sharp = 0;
    const std::vector<uint32_t> segments = edgeSegments(mesh, sharp);
    target.edgeIndexCount = GLsizei(segments.size());
    target.sharpIndexCount = GLsizei(sharp);
    if (segments.empty())
        return;
    glGenVertexArrays(1, &target.edgeArray);
    glBindVertexArray(target.edgeArray);
    target.edgeVertices = buffer(GL_ARRAY_BUFFER, edgeVertices(mesh));
    glVertexAttribPointer(kPosition, 3, GL_FLOAT, GL_FALSE, 4 * sizeof(float), nullptr);
    glVertexAttribPointer(kEdgeLength, 1, GL_FLOAT, GL_FALSE, 4 * sizeof(float),
                          bufferOffset(3 * sizeof(float)));
    glEnableVertexAttribArray(kPosition);
    glEnableVertexAttribArray(kEdgeLength);
    enableInstanceAttributes();
    target.edgeIndices = indexBuffer(segments, mesh.edgePoints.size() / 3, target.edgeIndexType);
}

void MeshStore::free(GlMesh& mesh)
{
    // Name 0 is ignored by all of these.
    const GLuint arrays[] = {mesh.faceArray, mesh.edgeArray};
    const GLuint buffers[] = {mesh.vertices, mesh.edgeVertices, mesh.indices, mesh.edgeIndices};
    if (mesh.faceArray) {
        glDeleteVertexArrays(2, arrays);
        glDeleteBuffers(4, buffers);
    }
    mesh = GlMesh();
}

void MeshStore::free(Entry& entry)
{
    free(entry.gl);
    for (auto& [cells, level] : entry.levels) {
        free(level.gl);
        m_coming -= level.coming.valid(); // the destructor waits for it to end
    }
    entry.levels.clear();
}

void MeshStore::collect()
{
    for (auto entry = m_meshes.begin(); entry != m_meshes.end();) {
        if (entry->second.gl.source.expired()) {
            free(entry->second);
            entry = m_meshes.erase(entry);
        } else {
            ++entry;
        }
    }
}

void MeshStore::release()
{
    for (auto& [mesh, entry] : m_meshes)
        free(entry);
    m_meshes.clear();
}

} // namespace Rendra
