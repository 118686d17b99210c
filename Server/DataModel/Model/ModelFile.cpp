#include "Server/DataModel/Model/ModelFile.h"

#include "Server/Base/Strings.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
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
    template <class T>
    void run(std::vector<T>& target)
    {
        target.resize(count(sizeof(T)));
        bytes(target.data(), target.size() * sizeof(T));
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

PartTree::Node unpackNode(Reader& reader, size_t bodies, int depth)
{
    if (depth > kDeepestTree)
        throw std::runtime_error("its tree is too deep");
    PartTree::Node node;
    node.id = reader.text();
    node.name = reader.wideText();
    reader.bytes(node.placement.entry, sizeof node.placement.entry);
    const bool coloured = reader.value<uint8_t>() != 0;
    const Colour colour = reader.value<Colour>();
    if (coloured)
        node.colour = colour;
    node.body = reader.value<int32_t>();
    if (node.body < -1 || node.body >= static_cast<int64_t>(bodies))
        throw std::runtime_error("a component shows a body that isn't there");
    node.visible = reader.value<uint8_t>() != 0;
    const size_t children = reader.count(sizeof node.placement.entry);
    node.children.reserve(children);
    for (size_t i = 0; i < children; ++i)
        node.children.push_back(unpackNode(reader, bodies, depth + 1));
    return node;
}

std::runtime_error systemError(const std::string& path)
{
    return std::runtime_error(path + ": " + std::strerror(errno));
}

class FileSink : public ModelSink
{
public:
    explicit FileSink(const std::string& path) : m_path(path), m_file(std::fopen(path.c_str(), "wbe"))
    {
        if (!m_file)
            throw systemError(path);
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
    std::string m_path;
    std::FILE* m_file;
};

} // namespace

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
    if (place % alignof(Header) != 0)
        throw std::runtime_error("it isn't where a model may lie");
    std::shared_ptr<ModelFile> model(new ModelFile);
    model->m_data = bytes.data() + place;
    model->m_size = size;
    model->m_file = std::move(file);
    model->readIndex();
    return model;
}

ModelFile::Header ModelFile::header() const
{
    return Reader(m_data, m_data + sizeof(Header)).value<Header>();
}

uint64_t ModelFile::hash() const
{
    return header().headerHash;
}

void ModelFile::readIndex()
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

    Reader reader(m_data + header.indexPlace, m_data + header.kernelPlace);
    const size_t bodies = reader.count(sizeof(Colour));
    for (size_t i = 0; i < bodies; ++i) {
        PartTree::Body body;
        body.entry = reader.text();
        body.name = reader.wideText();
        body.colour = reader.value<Colour>();
        m_tree.bodies.push_back(std::move(body));
        const uint64_t place = reader.value<uint64_t>();
        const uint64_t size = reader.value<uint64_t>();
        if (place > header.indexPlace || size > header.indexPlace - place)
            throw std::runtime_error("a mesh lies outside of it");
        m_meshes.emplace_back(place, size);
    }
    const size_t roots = reader.count(1);
    for (size_t i = 0; i < roots; ++i)
        m_tree.roots.push_back(unpackNode(reader, bodies, 0));
    const size_t warnings = reader.count(1);
    for (size_t i = 0; i < warnings; ++i)
        m_warnings.push_back(reader.wideText());
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
    Reader reader(m_data + place, m_data + place + size);
    auto mesh = std::make_shared<BodyMesh>();
    double box[6];
    reader.bytes(box, sizeof box);
    mesh->bounds = BBox({box[0], box[1], box[2]}, {box[3], box[4], box[5]});
    reader.run(mesh->positions);
    reader.run(mesh->normals);
    reader.run(mesh->triangles);
    reader.run(mesh->faces);
    reader.run(mesh->colours);
    reader.run(mesh->edgePoints);
    reader.run(mesh->edgeStarts);
    if (hasVertexPoints())
        reader.run(mesh->vertexPoints);
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
    if (!mesh) {
        m_meshes.emplace_back(0, 0);
        return;
    }
    static constexpr char kNothing[16] = {};
    write(kNothing, (16 - m_position % 16) % 16);
    const uint64_t place = m_position;
    const GkPoint3d &low = mesh->bounds.low(), &high = mesh->bounds.high();
    const double box[6] = {low.x, low.y, low.z, high.x, high.y, high.z};
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
