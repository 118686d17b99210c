#include "Server/DataModel/Model/ModelBody.h"

#include "Server/Base/Strings.h"

#include <stdexcept>

namespace Vs {

std::shared_ptr<const BodyMesh> ModelBody::mesh() const
{
    std::unique_lock lock(m_mutex, std::defer_lock);
    // Whoever held it when this process was forked isn't there any more, and may have been making the mesh.
    if (!ForkedChild::is())
        lock.lock();
    else if (!lock.try_lock())
        return madeMesh();
    if (!m_meshAsked) {
        m_meshAsked = true;
        m_mesh = madeMesh();
    }
    return m_mesh;
}

std::shared_ptr<const BodyMesh> ModelBody::madeMesh() const
{
    try {
        if (auto mesh = m_fileIndex >= 0 ? meshOfFile() : meshFor({}))
            return mesh;
    } catch (const std::runtime_error&) {
        // A shape that the kernel can't mesh is shown as nothing.
    }
    return std::make_shared<BodyMesh>();
}

// A file of the first layout knows no vertices; only the exact shape can tell their order.
std::shared_ptr<const BodyMesh> ModelBody::meshOfFile() const
{
    std::shared_ptr<BodyMesh> mesh = m_source->file->mesh(static_cast<size_t>(m_fileIndex));
    if (!mesh || m_source->file->hasVertexPoints())
        return mesh;
    try {
        mesh->vertexPoints = meshFor({})->vertexPoints;
    } catch (const std::runtime_error&) {
        // Vertices can't be picked then.
    }
    return mesh;
}

bool ModelBody::smart(std::wstring* kind, GkMatrix3d* placement, double* size1, double* size2,
                      double* size3) const
{
    std::optional<ModelKernel::Recognised> found;
    try {
        found = m_source->withKernel([&](ModelKernel& kernel) { return kernel.recognise(m_part.entry); });
    } catch (const std::runtime_error&) {
        // A shape that the kernel can't look at is none of the simple ones.
    }
    if (!found)
        return false;
    constexpr const wchar_t* kKinds[] = {L"Box", L"Cylinder", L"Sphere"};
    if (kind)
        *kind = kKinds[static_cast<int>(found->kind)];
    if (placement)
        *placement = found->placement;
    double* const sizes[] = {size1, size2, size3};
    for (int i = 0; i < 3; ++i)
        if (sizes[i])
            *sizes[i] = found->sizes[i];
    return true;
}

bool ModelBody::update(const PartTree::Body& part)
{
    const bool changed = part.name != m_part.name || part.colour != m_part.colour;
    m_part = part;
    return changed;
}

std::shared_ptr<const BodyMesh> ModelBody::meshFor(const TranslatorRefinement& refinement) const
{
    return m_source->withKernel([&](ModelKernel& kernel) { return kernel.mesh(m_part.entry, refinement); });
}

std::optional<BodyProperties> ModelBody::properties(BodyMeasure what, Status& status) const
{
    const std::lock_guard lock(m_mutex);
    auto known = m_properties.find(what);
    if (known == m_properties.end()) {
        try {
            const BodyProperties measured = m_source->withKernel(
                [&](ModelKernel& kernel) { return kernel.properties(m_part.entry, what); });
            known = m_properties.emplace(what, measured).first;
        } catch (const std::runtime_error& error) {
            status.addError(L"\"" + m_part.name + L"\" can't be measured: " + Strings::widen(error.what()));
            return std::nullopt;
        }
    }
    return known->second;
}

const std::vector<uint32_t>& ModelBody::solidsOfFaces() const
{
    const std::lock_guard lock(m_mutex);
    if (!m_solidsOfFaces) {
        try {
            m_solidsOfFaces =
                m_source->withKernel([&](ModelKernel& kernel) { return kernel.solidsOfFaces(m_part.entry); });
        } catch (const std::runtime_error&) {
            m_solidsOfFaces.emplace();
        }
    }
    return *m_solidsOfFaces;
}

ShapeAnswer ModelBody::measurePart(ObjectPath::Leaf leaf, uint32_t index, EMeasureType type) const
{
    const std::lock_guard lock(m_mutex);
    const auto key = std::tuple(leaf, index, type);
    auto known = m_answers.find(key);
    if (known == m_answers.end()) {
        const MeasuredShape part{m_part.entry, leaf, index, {}};
        const ShapeAnswer answer =
            m_source->withKernel([&](ModelKernel& kernel) { return kernel.measurePart(part, type); });
        known = m_answers.emplace(key, answer).first;
    }
    return known->second;
}

} // namespace Vs
