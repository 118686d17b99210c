#include "Server/DataModel/ModelDigest.h"

#include "Server/Base/Require.h"
#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"

#include <cmath>
#include <iterator>
#include <memory>
#include <unordered_map>
#include <utility>
#include <xxhash.h>

namespace Vs {
namespace {

class Digest
{
public:
    Digest() : m_state(XXH3_createState(), &XXH3_freeState) { XXH3_64bits_reset(m_state.get()); }

    template <class T>
    void add(const T& value) requires std::is_arithmetic_v<T>
    {
        XXH3_64bits_update(m_state.get(), &value, sizeof value);
    }
    void add(const Colour& colour)
    {
        for (const float part : {colour.r, colour.g, colour.b, colour.a})
            add(part);
    }
    /// The size is hashed as well, so that the end of one list can't pass for the beginning of the next.
    template <class List>
    void addAll(const List& list)
    {
        add(uint64_t(list.size()));
        XXH3_64bits_update(m_state.get(), list.data(), list.size() * sizeof(*list.data()));
    }
    uint64_t result() const { return XXH3_64bits_digest(m_state.get()); }

private:
    std::unique_ptr<XXH3_state_t, XXH_errorcode (*)(XXH3_state_t*)> m_state;
};

uint64_t digestOf(const Body& body)
{
    Digest digest;
    digest.addAll(body.name());
    digest.add(body.colour());
    if (const std::shared_ptr<const BodyMesh> mesh = body.mesh()) {
        digest.addAll(mesh->positions);
        digest.addAll(mesh->triangles);
        digest.addAll(mesh->edgePoints);
        digest.add(uint64_t(mesh->faces.size()));
        for (const BodyMesh::Face& face : mesh->faces)
            digest.add(face.triangleCount);
        for (const Colour& colour : mesh->colours)
            digest.add(colour);
        // Models without materials have the digests that references keep from before there were any.
        if (!mesh->finishes.empty())
            digest.addAll(mesh->finishes);
    }
    return digest.result();
}

class TreeDigest
{
public:
    TreeDigest(Digest& digest, BodyDigests& bodies) : m_digest(digest), m_known(bodies) {}

    void addChildren(const Component& parent)
    {
        m_digest.add(uint64_t(parent.children.size()));
        for (const auto& child : parent.children)
            addComponent(*child);
    }

private:
    void addComponent(const Component& component)
    {
        m_digest.addAll(component.name.text());
        constexpr double kUnit = 1e-6; // mm
        const GkMatrix3d placement = component.placement;
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 4; ++column)
                m_digest.add(std::llround(placement.entry[row][column] / kUnit));
        m_digest.add(component.visible);
        m_digest.add(component.colour.has_value());
        if (component.colour)
            m_digest.add(*component.colour);
        m_digest.add(component.body ? bodyDigest(*component.body) : uint64_t(0));
        addChildren(component);
    }

    uint64_t bodyDigest(const Body& body)
    {
        const auto [known, isNew] = m_bodies.try_emplace(&body);
        if (isNew)
            known->second = m_known.of(body);
        return known->second;
    }

    Digest& m_digest;
    BodyDigests& m_known;
    std::unordered_map<const Body*, uint64_t> m_bodies;
};

} // namespace

uint64_t BodyDigests::of(const Body& body)
{
    std::shared_ptr<const BodyMesh> mesh = body.mesh();
    if (!mesh)
        return digestOf(body);
    Known& known = m_known[mesh.get()];
    if (!known.mesh || known.name != body.name() || !(known.colour == body.colour()))
        known = {std::move(mesh), body.name(), body.colour(), digestOf(body)};
    known.used = true;
    return known.digest;
}

void BodyDigests::forgetUnused()
{
    for (auto each = m_known.begin(); each != m_known.end();)
        each = std::exchange(each->second.used, false) ? std::next(each) : m_known.erase(each);
}

uint64_t modelDigest(const Asset& asset)
{
    BodyDigests bodies;
    return modelDigest(asset, bodies);
}

uint64_t modelDigest(const Asset& asset, BodyDigests& bodies)
{
    assertMainThread();
    Digest digest;
    TreeDigest(digest, bodies).addChildren(*asset.components());
    for (const auto& [key, value] : asset.settings()) {
        digest.addAll(key);
        digest.addAll(value);
    }
    return digest.result();
}

} // namespace Vs
