#include "Server/DataModel/Model/ModelFile.h"

#include "Server/Base/Strings.h"
#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Model/MeshArrays.h"
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
    /// The layout that is written; the first, without the vertices of exact shapes, is read as well.
    static constexpr uint32_t kVersion = 2;

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

// Runs of numbers are stored behind their count; this reads them back and never leaves the file's bounds.
class Reader
{
public:
    Reader(const char* begin, const char* end) : m_at(begin), m_end(end) {}

    void bytes(void* target, size_t size)
    {
        if (size > static_cast<size_t>(m_end - m_at))
            throw std::runtime_error("it ends too early");
        // No numbers are in no array.
        if (size > 0)
            std::memcpy(target, m_at, size);
        m_at += size;
    }
    template <class T>
    T value()
    {
        T result;
        bytes(&result, sizeof result);
        return result;
    }
    // A count of things that take at least `size` bytes each.
    size_t count(size_t size)
    {
        const uint64_t result = value<uint64_t>();
        if (result > static_cast<size_t>(m_end - m_at) / size)
            throw std::runtime_error("it holds an impossible count");
        return result;
    }
    /// Where it lies; so it must lie as its kind of numbers may.
    template <class T>
    std::span<const T> run()
    {
        const size_t size = count(sizeof(T));
        const char* begin = m_at;
        m_at += size * sizeof(T);
        return {reinterpret_cast<const T*>(begin), size};
    }
    std::string text()
    {
        std::string result(count(1), '\0');
        bytes(result.data(), result.size());
        return result;
    }
    std::wstring wideText() { return Strings::widen(text()); }

private:
    const char* m_at;
    const char* m_end;
};

class Packer
{
public:
    template <class T>
    void value(const T& value)
    {
        m_bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    template <class T>
    void run(const std::vector<T>& values)
    {
        value<uint64_t>(values.size());
        m_bytes.append(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T));
    }
    void text(std::string_view text)
    {
        value<uint64_t>(text.size());
        m_bytes.append(text);
    }
    void text(std::wstring_view text) { this->text(Strings::narrow(text)); }
    const std::string& bytes() const { return m_bytes; }

private:
    std::string m_bytes;
};

// A tree from outside may be of any depth; ours never come near this one.
constexpr int kDeepestTree = 1000;
// Places of numbers in a model are multiples of this.
constexpr uint64_t kAlignment = 16;
// The box around a mesh, before its numbers.
constexpr size_t kBoxSize = 6 * sizeof(double);

void pack(Packer& packer, const PartTree::Node& node)
{
    packer.text(node.id);
    packer.text(node.name);
    packer.value(node.placement.entry);
    packer.value<uint8_t>(node.colour.has_value());
    packer.value(node.colour.value_or(Colour{}));
    packer.value(node.body);
    packer.value<uint8_t>(node.visible);
    packer.value<uint64_t>(node.children.size());
    for (const PartTree::Node& child : node.children)
        pack(packer, child);
}

class TreeReader
{
public:
    TreeReader(Reader& reader, size_t bodies) : m_reader(reader), m_bodies(bodies) {}

    std::vector<PartTree::Node> nodes(const std::string& parent, int depth)
    {
        if (depth > kDeepestTree)
            throw std::runtime_error("its tree is too deep");
        std::vector<PartTree::Node> nodes;
        const size_t count = m_reader.count(kLeastNode);
        // What each claims may be there, but not what all of them claim together.
        nodes.reserve(std::min(count, kReserved));
        int before = 0;
        for (size_t i = 0; i < count; ++i) {
            nodes.push_back(node(depth));
            // Components are found by their ids, which lead from parent to child in this order.
            const std::string& id = nodes.back().id;
            const size_t begin = parent.empty() ? 0 : parent.size() + 1;
            const int own = lastNumber(id);
            if (!id.starts_with(parent) || id.rfind('/') + 1 != begin || own <= before)
                throw std::runtime_error("its tree is out of order");
            before = own;
        }
        return nodes;
    }

private:
    // Of empty texts and nothing below.
    static constexpr size_t kLeastNode =
        3 * sizeof(uint64_t) + sizeof(GkMatrix3d::entry) + sizeof(Colour) + sizeof(int32_t) + 2;
    static constexpr size_t kReserved = 256;

    PartTree::Node node(int depth)
    {
        PartTree::Node node;
        node.id = m_reader.text();
        node.name = m_reader.wideText();
        m_reader.bytes(node.placement.entry, sizeof node.placement.entry);
        const bool coloured = m_reader.value<uint8_t>() != 0;
        const Colour colour = m_reader.value<Colour>();
        if (coloured)
            node.colour = colour;
        node.body = m_reader.value<int32_t>();
        if (node.body < -1 || node.body >= static_cast<int64_t>(m_bodies))
            throw std::runtime_error("a component shows a body that isn't there");
        node.visible = m_reader.value<uint8_t>() != 0;
        node.children = nodes(node.id, depth + 1);
        return node;
    }

    Reader& m_reader;
    size_t m_bodies;
};

MeshArrays meshAt(Reader& reader, bool hasVertexPoints)
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
    return Reader(m_data, m_data + sizeof(Header)).value<Header>();
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
    Reader reader(m_data + header.indexPlace, m_data + header.kernelPlace);
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
    index.tree.roots = TreeReader(reader, bodies).nodes({}, 0);
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
    Reader reader(m_data + place + kBoxSize, m_data + place + size);
    return meshAt(reader, hasVertexPoints());
}

bool ModelFile::hasVertexPoints() const
{
    return header().version > 1;
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
    packer.value<uint64_t>(tree.roots.size());
    for (const PartTree::Node& root : tree.roots)
        pack(packer, root);
    packer.value<uint64_t>(warnings.size());
    for (const std::wstring& warning : warnings)
        packer.text(warning);
    m_indexPlace = m_position;
    write(packer.bytes().data(), packer.bytes().size());
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
