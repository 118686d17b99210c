#pragma once

#include "Server/Body/BodyMesh.h"

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <xxhash.h>

/// A model file in memory, to be changed as an attacker would: its hashes, which have no key, are made to
/// match again.
class CraftedModel
{
public:
    explicit CraftedModel(std::string bytes) : m_bytes(std::move(bytes)) {}

    size_t size() const { return m_bytes.size(); }
    template <class T>
    T get(size_t at) const
    {
        T value;
        std::memcpy(&value, &m_bytes.at(at + sizeof value - 1) - (sizeof value - 1), sizeof value);
        return value;
    }
    template <class T>
    void set(size_t at, const T& value)
    {
        std::memcpy(&m_bytes.at(at + sizeof value - 1) - (sizeof value - 1), &value, sizeof value);
    }
    /// Where a number is between two offsets of the file; fails by an exception if it isn't there.
    size_t find(uint64_t value, size_t begin, size_t end) const
    {
        for (size_t at = begin; at + sizeof value <= end; ++at)
            if (get<uint64_t>(at) == value)
                return at;
        throw std::runtime_error("the number isn't there");
    }

    static constexpr size_t kHeader = 64;
    size_t indexPlace() const { return get<uint64_t>(24); }
    size_t kernelPlace() const { return get<uint64_t>(32); }

    /// Replaces the only mesh with this one, as it is; in the third layout, it has no finishes.
    void replaceMesh(const Vs::BodyMesh& mesh, uint32_t layout = 4)
    {
        set<uint32_t>(8, layout);
        const size_t index = indexPlace();
        const std::string content = m_bytes.substr(kHeader, kBox) + runsOf(mesh, layout);
        set<uint64_t>(find(index - kHeader, index, kernelPlace()), content.size());
        m_bytes.replace(kHeader, index - kHeader, content);
        const uint64_t moved = content.size() - (index - kHeader);
        set<uint64_t>(16, m_bytes.size());
        set<uint64_t>(24, index + moved);
        set<uint64_t>(32, get<uint64_t>(32) + moved);
    }

    /// The file with matching hashes; fails by an exception if there is nothing to hash.
    const std::string& sealed()
    {
        if (kernelPlace() < kHeader || kernelPlace() > m_bytes.size())
            throw std::out_of_range("the exact data are nowhere");
        const auto hash = [&](size_t begin, size_t end) { return XXH3_64bits(&m_bytes[begin], end - begin); };
        set<uint64_t>(40, hash(kHeader, kernelPlace()));
        set<uint64_t>(48, hash(kernelPlace(), m_bytes.size()));
        set<uint64_t>(56, hash(0, 56));
        return m_bytes;
    }

private:
    static constexpr size_t kBox = 48;

    static std::string runsOf(const Vs::BodyMesh& mesh, uint32_t layout)
    {
        std::string bytes;
        const auto run = [&](const auto& values) {
            const uint64_t count = values.size();
            bytes.append(reinterpret_cast<const char*>(&count), sizeof count);
            bytes.append(reinterpret_cast<const char*>(values.data()), count * sizeof values[0]);
        };
        run(mesh.positions);
        run(mesh.normals);
        run(mesh.triangles);
        run(mesh.faces);
        run(mesh.colours);
        run(mesh.edgePoints);
        run(mesh.edgeStarts);
        run(mesh.vertexPoints);
        if (layout > 3)
            run(mesh.finishes);
        return bytes;
    }

    std::string m_bytes;
};
