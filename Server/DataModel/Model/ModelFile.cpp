#include "Server/DataModel/Model/ModelFile.h"

#include "Server/DataModel/Model/MeshArrays.h"
#include "Server/DataModel/Model/PackedTree.h"
#include "Server/DataModel/Model/PlainFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <span>
#include <stdexcept>
#include <utility>

namespace Vs {

struct ModelFile::Header
{
    static constexpr char kMagic[8] = {'Q', 'L', 'T', 'M', 'O', 'D', 'E', 'L'};
    /// The layout that is written. The first, without the vertices of exact shapes, the second, with a tree
    /// of fixed sizes, and the third, without finishes, are read as well.
    static constexpr uint32_t kVersion = 4;

    char magic[8];
    uint32_t version;
    uint32_t headerSize;
    uint64_t fileSize;
    uint64_t indexPlace;
    uint64_t kernelPlace;
    uint64_t shownHash;  // of meshes and index
    uint64_t kernelHash; // of the exact data
    uint64_t headerHash; // of all before it
};

namespace {

// Places of numbers in a model are multiples of this.
constexpr uint64_t kAlignment = 16;
// The box around a mesh, before its numbers.
constexpr size_t kBoxSize = 6 * sizeof(double);

MeshArrays meshAt(PackedReader& reader, bool hasVertexPoints, bool hasFinishes)
{
    MeshArrays mesh;
    mesh.positions = reader.run<float>();
    mesh.normals = reader.run<float>();
    mesh.triangles = reader.run<uint32_t>();
    mesh.faces = reader.run<BodyMesh::Face>();
    mesh.colours = reader.run<Colour>();
    mesh.edgePoints = reader.run<float>();
    mesh.edgeStarts = reader.run<uint32_t>();
    if (hasVertexPoints)
        mesh.vertexPoints = reader.run<float>();
    if (hasFinishes)
        mesh.finishes = reader.run<Finish>();
    return mesh;
}

std::runtime_error systemError(const std::string& path)
{
    return std::runtime_error(path + ": " + std::strerror(errno));
}

class FileSink : public ModelSink
{
public:
    explicit FileSink(const std::string& path) : m_path(path), m_file(opened(path))
    {
        constexpr size_t kBufferSize = 1 << 18;
        std::setvbuf(m_file, nullptr, _IOFBF, kBufferSize);
    }
    ~FileSink() override
    {
        if (m_file)
            std::fclose(m_file);
    }
    void reserve(size_t size) override
    {
        const std::string room(size, '\0');
        append(room.data(), size);
    }
    void append(const void* data, size_t size) override
    {
        if (size != 0 && std::fwrite(data, size, 1, m_file) != 1)
            throw systemError(m_path);
    }
    void finish(const void* front, size_t size) override
    {
        if (std::fseek(m_file, 0, SEEK_SET) != 0 || std::fwrite(front, size, 1, m_file) != 1 ||
            std::fclose(std::exchange(m_file, nullptr)) != 0)
            throw systemError(m_path);
    }

private:
    static std::FILE* opened(const std::string& path)
    {
        try {
            return fdopen(createPrivateFile(path), "wb");
        } catch (const std::runtime_error& error) {
            throw std::runtime_error(path + ": " + error.what());
        }
    }

    std::string m_path;
    std::FILE* m_file;
};

} // namespace

struct ModelFile::Index
{
    PartTree tree;
    std::vector<std::pair<uint64_t, uint64_t>> meshes;
    std::vector<std::wstring> warnings;
};

std::shared_ptr<const ModelFile> ModelFile::open(const std::string& path)
{
    try {
        auto file = FileMapping::open(path);
        const uint64_t size = file->bytes().size();
        return open(std::move(file), 0, size);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(path + ": " + error.what());
    }
}

std::shared_ptr<const ModelFile> ModelFile::open(std::shared_ptr<const FileMapping> file, uint64_t place,
                                                 uint64_t size)
{
    const std::string_view bytes = file->bytes();
    if (size < sizeof(Header) || place > bytes.size() || size > bytes.size() - place)
        throw std::runtime_error("it is too short to be a model");
    if (place % kAlignment != 0)
        throw std::runtime_error("it isn't where a model may lie");
    std::shared_ptr<ModelFile> model(new ModelFile);
    model->m_data = bytes.data() + place;
    model->m_size = size;
    model->m_file = std::move(file);
    model->checkHeader();
    Index index = model->readIndex();
    model->m_tree = std::move(index.tree);
    model->m_meshes = std::move(index.meshes);
    model->m_warnings = std::move(index.warnings);
    model->checkMeshes();
    return model;
}

PartTree ModelFile::tree() const
{
    std::optional<PartTree> known;
    {
        const std::lock_guard lock(m_mutex);
        known.swap(m_tree);
    }
    return known ? std::move(*known) : readIndex().tree;
}

ModelFile::Header ModelFile::header() const
{
    return PackedReader(m_data, m_data + sizeof(Header)).value<Header>();
}

uint64_t ModelFile::hash() const
{
    return header().headerHash;
}

void ModelFile::checkHeader() const
{
    const Header header = this->header();
    if (std::memcmp(header.magic, Header::kMagic, sizeof header.magic) != 0 || header.version == 0 ||
        header.version > Header::kVersion || header.headerSize != sizeof(Header))
        throw std::runtime_error("it isn't a model of this version");
    if (header.headerHash != XXH3_64bits(&header, offsetof(Header, headerHash)) ||
        header.fileSize != m_size || header.indexPlace < sizeof(Header) ||
        header.kernelPlace < header.indexPlace || header.kernelPlace > m_size ||
        header.shownHash != XXH3_64bits(m_data + sizeof(Header), header.kernelPlace - sizeof(Header)))
        throw std::runtime_error("it is damaged");
}

ModelFile::Index ModelFile::readIndex() const
{
    const Header header = this->header();
    Index index;
    PackedReader reader(m_data + header.indexPlace, m_data + header.kernelPlace);
    const size_t bodies = reader.count(sizeof(Colour));
    for (size_t i = 0; i < bodies; ++i) {
        PartTree::Body body;
        body.entry = reader.text();
        body.name = reader.wideText();
        body.colour = reader.value<Colour>();
        index.tree.bodies.push_back(std::move(body));
        const uint64_t place = reader.value<uint64_t>();
        const uint64_t size = reader.value<uint64_t>();
        index.meshes.emplace_back(place, size);
    }
    index.tree.roots = readTree(reader, bodies, header.version > 2 ? TreeLayout::Short : TreeLayout::Wide);
    const size_t warnings = reader.count(1);
    for (size_t i = 0; i < warnings; ++i)
        index.warnings.push_back(reader.wideText());
    return index;
}

// One after the other, as they were written: if several bodies could have one mesh, a small file could hold
// any number of them.
void ModelFile::checkMeshes() const
{
    const uint64_t index = header().indexPlace;
    uint64_t end = sizeof(Header);
    for (size_t body = 0; body < m_meshes.size(); ++body) {
        const auto [place, size] = m_meshes[body];
        if (size == 0)
            continue;
        if (size < kBoxSize || place < end || place % kAlignment != 0 || place > index ||
            size > index - place)
            throw std::runtime_error("a mesh isn't where one may lie");
        end = place + size;
        if (!arrays(body).isSound())
            throw std::runtime_error("it is damaged");
    }
}

MeshArrays ModelFile::arrays(size_t body) const
{
    const auto [place, size] = m_meshes.at(body);
    PackedReader reader(m_data + place + kBoxSize, m_data + place + size);
    return meshAt(reader, hasVertexPoints(), hasFinishes());
}

bool ModelFile::hasVertexPoints() const
{
    return header().version > 1;
}

bool ModelFile::hasFinishes() const
{
    return header().version > 3;
}

std::shared_ptr<BodyMesh> ModelFile::mesh(size_t body) const
{
    const auto [place, size] = m_meshes.at(body);
    if (size == 0)
        return nullptr;
    auto mesh = std::make_shared<BodyMesh>();
    double box[6];
    static_assert(sizeof box == kBoxSize);
    std::memcpy(box, m_data + place, sizeof box);
    mesh->bounds = BBox({box[0], box[1], box[2]}, {box[3], box[4], box[5]});
    const auto copy = [](auto& target, const auto& source) { target.assign(source.begin(), source.end()); };
    const MeshArrays arrays = this->arrays(body);
    copy(mesh->positions, arrays.positions);
    copy(mesh->normals, arrays.normals);
    copy(mesh->triangles, arrays.triangles);
    copy(mesh->faces, arrays.faces);
    copy(mesh->colours, arrays.colours);
    copy(mesh->edgePoints, arrays.edgePoints);
    copy(mesh->edgeStarts, arrays.edgeStarts);
    copy(mesh->vertexPoints, arrays.vertexPoints);
    copy(mesh->finishes, arrays.finishes);
    m_file->unneeded({m_data + place, size});
    return mesh;
}

std::string_view ModelFile::kernelData() const
{
    const Header header = this->header();
    const std::string_view data(m_data + header.kernelPlace, m_size - header.kernelPlace);
    if (header.kernelHash != XXH3_64bits(data.data(), data.size()))
        throw std::runtime_error("The exact data of the model are damaged.");
    return data;
}

ModelFileWriter::ModelFileWriter(ModelSink& sink) : m_sink(sink)
{
    // The header is known last; its room isn't part of a hash.
    m_sink.reserve(sizeof(ModelFile::Header));
    m_position = sizeof(ModelFile::Header);
    m_hash = XXH3_createState();
    XXH3_64bits_reset(m_hash);
}

ModelFileWriter::ModelFileWriter(std::unique_ptr<ModelSink> own) : ModelFileWriter(*own)
{
    m_own = std::move(own);
}

ModelFileWriter::ModelFileWriter(const std::string& path) : ModelFileWriter(std::make_unique<FileSink>(path))
{
}

ModelFileWriter::~ModelFileWriter()
{
    XXH3_freeState(m_hash);
}

void ModelFileWriter::write(const void* data, size_t size)
{
    m_sink.append(data, size);
    XXH3_64bits_update(m_hash, data, size);
    m_position += size;
}

void ModelFileWriter::addMesh(const BodyMesh* mesh)
{
    // One that isn't sound would make the whole model unreadable.
    if (!mesh || !MeshArrays::of(*mesh).isSound()) {
        m_meshes.emplace_back(0, 0);
        return;
    }
    static constexpr char kNothing[kAlignment] = {};
    write(kNothing, (kAlignment - m_position % kAlignment) % kAlignment);
    const uint64_t place = m_position;
    const GkPoint3d &low = mesh->bounds.low(), &high = mesh->bounds.high();
    const double box[] = {low.x, low.y, low.z, high.x, high.y, high.z};
    static_assert(sizeof box == kBoxSize);
    write(box, sizeof box);
    const auto run = [&](const auto& values) {
        const uint64_t count = values.size();
        write(&count, sizeof count);
        write(values.data(), count * sizeof values[0]);
    };
    run(mesh->positions);
    run(mesh->normals);
    run(mesh->triangles);
    run(mesh->faces);
    run(mesh->colours);
    run(mesh->edgePoints);
    run(mesh->edgeStarts);
    run(mesh->vertexPoints);
    run(mesh->finishes);
    m_meshes.emplace_back(place, m_position - place);
}

void ModelFileWriter::writeIndex(const PartTree& tree, const std::vector<std::wstring>& warnings)
{
    Packer packer;
    packer.value<uint64_t>(tree.bodies.size());
    for (size_t i = 0; i < tree.bodies.size(); ++i) {
        packer.text(tree.bodies[i].entry);
        packer.text(tree.bodies[i].name);
        packer.value(tree.bodies[i].colour);
        packer.value(m_meshes.at(i).first);
        packer.value(m_meshes.at(i).second);
    }
    packTree(packer, tree.roots);
    packer.value<uint64_t>(warnings.size());
    for (const std::wstring& warning : warnings)
        packer.text(warning);
    m_indexPlace = m_position;
    write(packer.packed().data(), packer.packed().size());
    m_kernelPlace = m_position;
    m_shownHash = XXH3_64bits_digest(m_hash);
    XXH3_64bits_reset(m_hash);
}

void ModelFileWriter::addKernelData(std::string_view bytes)
{
    write(bytes.data(), bytes.size());
}

uint64_t ModelFileWriter::finish()
{
    ModelFile::Header header{};
    std::memcpy(header.magic, ModelFile::Header::kMagic, sizeof header.magic);
    header.version = ModelFile::Header::kVersion;
    header.headerSize = sizeof header;
    header.fileSize = m_position;
    header.indexPlace = m_indexPlace;
    header.kernelPlace = m_kernelPlace;
    header.shownHash = m_shownHash;
    header.kernelHash = XXH3_64bits_digest(m_hash);
    header.headerHash = XXH3_64bits(&header, offsetof(ModelFile::Header, headerHash));
    m_sink.finish(&header, sizeof header);
    return header.headerHash;
}

} // namespace Vs
