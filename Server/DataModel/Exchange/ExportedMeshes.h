#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/DataModel/Exchange/MeshExport.h"
#include "Server/DataModel/NewFile.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Vs {
class Body;
}

namespace Vs::Exchange {

/// A body at one of its occurrences.
struct Occurrence
{
    const Body* body;
    GkMatrix3d placement; ///< In the asset's coordinates.
    Colour colour;        ///< Of faces without their own colour.
    std::wstring name;
};

/// The name given to a component that has none.
std::wstring nameOf(const Component& component);

/// The occurrences below a component, and the mesh of each body.
class ExportedMeshes
{
public:
    /// Which share of the work is reported for meshing.
    static constexpr double kShare = 0.7;

    /// Returns false if it was cancelled; throws std::runtime_error if there is nothing to write.
    bool make(const MeshExport& job);

    const std::vector<Occurrence>& occurrences() const { return m_occurrences; }
    /// Of all occurrences together.
    uint64_t triangles() const { return m_triangles; }
    /// Null if the body has none.
    const BodyMesh* of(const Body* body) const;

private:
    void collect(const Component& component, const GkMatrix3d& parent,
                 const std::optional<Colour>& inherited);

    std::vector<Occurrence> m_occurrences;
    std::unordered_map<const Body*, std::shared_ptr<const BodyMesh>> m_meshes;
    uint64_t m_triangles = 0;
};

/// How a face looks.
struct Look
{
    Colour colour;
    Finish finish;
    friend bool operator==(const Look&, const Look&) = default;
};

/// Triangles grouped by their look, each look with its own vertices.
class ColourGroups
{
public:
    struct Group
    {
        Look look;
        std::vector<float> positions, normals;
        std::vector<uint32_t> triangles;
    };

    /// Adds a mesh, moved (and scaled evenly) by the placement. `plain` is the colour of the faces that have
    /// none.
    void add(const BodyMesh& mesh, const Colour& plain, const GkMatrix3d& placement);

    const std::vector<Group>& groups() const { return m_groups; }

private:
    Group& groupOf(const Look& look);

    std::vector<Group> m_groups;
};

/// From our z-up and millimetres to y-up and that unit, as in OBJ and glTF.
GkMatrix3d yUpwards(double unitInMillimetres);

/// From ours to what the job asks for, with that axis as up if it doesn't say.
GkMatrix3d towards(const MeshExport& job, UpAxis usual);

/// A new file that is written sequentially. Throws std::runtime_error.
class ExportFile
{
public:
    explicit ExportFile(const std::wstring& path);
    void write(std::string_view bytes);
    void commit();

private:
    struct Closer
    {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    NewFile m_file;
    std::unique_ptr<std::FILE, Closer> m_stream;
};

/// Runs the work and turns exceptions into an error that names the file.
bool exported(const MeshExport& job, Status& status, const std::function<bool()>& work);

} // namespace Vs::Exchange
