#pragma once

#include "Server/DataModel/Model/FileMapping.h"
#include "Server/DataModel/Model/PartTree.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>
#include <xxhash.h>

namespace Vs {

class ModelFileWriter;
struct MeshArrays;

/// A model on disk, ready to be shown: the component tree and the meshes of its bodies as they are in memory,
/// followed by the exact data of ModelKernel::write. It is mapped, so that only what is used is read. Anybody
/// can make one, and its hashes detect accidental damage only: nothing in it is trusted unchecked.
///
/// Layout, little-endian: a header of fixed size; the meshes, each aligned to 16 bytes; the index (tree,
/// bodies, warnings); the exact data. The header holds the place and the hash of each.
class ModelFile
{
public:
    /// Maps the file and checks its header, its index, its hashes and its meshes, but not its exact data.
    /// Throws std::runtime_error with the fault.
    [[nodiscard]] static std::shared_ptr<const ModelFile> open(const std::string& path);
    /// The same for a model inside a larger file. `place` must be a multiple of 16.
    [[nodiscard]] static std::shared_ptr<const ModelFile> open(std::shared_ptr<const FileMapping> file,
                                                               uint64_t place, uint64_t size);
    ModelFile(const ModelFile&) = delete;
    ModelFile& operator=(const ModelFile&) = delete;

    /// Not kept: it takes more memory than it does in the file. The first call returns what was read when the
    /// file was opened, later ones read it again. Safe from any thread.
    [[nodiscard]] PartTree tree() const;
    /// The warnings of whoever made the file.
    const std::vector<std::wstring>& warnings() const { return m_warnings; }
    /// Distinguishes this model from any other: a hash of its hashes.
    uint64_t hash() const;
    /// Where it lies.
    const std::shared_ptr<const FileMapping>& file() const { return m_file; }
    uint64_t place() const { return static_cast<uint64_t>(m_data - m_file->bytes().data()); }
    uint64_t size() const { return m_size; }
    /// Copies the mesh of a body out of the file; null if it has none. Safe from any thread.
    [[nodiscard]] std::shared_ptr<BodyMesh> mesh(size_t body) const;
    /// Whether the meshes have the vertices of the exact shapes, which the first layout omitted.
    bool hasVertexPoints() const;
    /// Whether the meshes have the finishes of materials. In older files materials are in the exact data
    /// alone, from which they had become colours.
    bool hasFinishes() const;
    /// The exact data, after checking their hash; throws std::runtime_error if they are damaged. Valid as
    /// long as this object lives.
    [[nodiscard]] std::string_view kernelData() const;

private:
    friend class ModelFileWriter;
    ModelFile() = default;
    struct Index;
    void checkHeader() const;
    Index readIndex() const;
    void checkMeshes() const;
    /// For a body that has a mesh.
    MeshArrays arrays(size_t body) const;

    struct Header;
    Header header() const;

    std::shared_ptr<const FileMapping> m_file;
    const char* m_data = nullptr;
    size_t m_size = 0;
    mutable std::mutex m_mutex; // of the next
    mutable std::optional<PartTree> m_tree;
    std::vector<std::wstring> m_warnings;
    std::vector<std::pair<uint64_t, uint64_t>> m_meshes; // offset and size
};

/// What a model file is written to, front to back. Anything that fails throws std::runtime_error.
class ModelSink
{
public:
    virtual ~ModelSink() = default;
    /// Reserves space at the front for content that is known last. Called once, before anything else.
    virtual void reserve(size_t size) = 0;
    virtual void append(const void* data, size_t size) = 0;
    /// Fills the reserved space and completes the model.
    virtual void finish(const void* front, size_t size) = 0;
};

/// Writes a model file from front to back. Anything that fails throws std::runtime_error.
class ModelFileWriter
{
public:
    explicit ModelFileWriter(const std::string& path);
    /// `sink` must outlive the writer.
    explicit ModelFileWriter(ModelSink& sink);
    ~ModelFileWriter();
    ModelFileWriter(const ModelFileWriter&) = delete;
    ModelFileWriter& operator=(const ModelFileWriter&) = delete;

    /// One call for each body, in the order of the tree's bodies; null for a body without a mesh. A mesh that
    /// isn't sound (MeshArrays) counts as none.
    void addMesh(const BodyMesh* mesh);
    /// After the meshes.
    void writeIndex(const PartTree& tree, const std::vector<std::wstring>& warnings);
    /// After the index; the output of `ModelKernel::write`, in pieces.
    void addKernelData(std::string_view bytes);
    /// Completes the header and the file. Returns the model's hash.
    uint64_t finish();

private:
    explicit ModelFileWriter(std::unique_ptr<ModelSink> own);
    void write(const void* data, size_t size);

    std::unique_ptr<ModelSink> m_own;
    ModelSink& m_sink;
    uint64_t m_position = 0;
    XXH3_state_t* m_hash = nullptr;
    uint64_t m_indexPlace = 0, m_kernelPlace = 0, m_shownHash = 0;
    std::vector<std::pair<uint64_t, uint64_t>> m_meshes;
};

} // namespace Vs
