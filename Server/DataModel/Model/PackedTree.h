#pragma once

#include "Server/Base/Strings.h"
#include "Server/DataModel/Model/PartTree.h"

#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace Vs {

/// Reads what a Packer has packed, and never leaves the bounds: throws std::runtime_error. Arrays of numbers
/// are preceded by their count.
class PackedReader
{
public:
    PackedReader(const char* begin, const char* end) : m_at(begin), m_end(end) {}

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
    /// A count of things that take at least `size` bytes each.
    size_t count(size_t size) { return possible(value<uint64_t>(), size); }
    /// The same, as packed by Packer::shortCount.
    size_t shortCount(size_t size);
    /// In place; so it must be aligned for its type of numbers.
    template <class T>
    std::span<const T> run()
    {
        const size_t size = count(sizeof(T));
        const char* begin = m_at;
        m_at += size * sizeof(T);
        return {reinterpret_cast<const T*>(begin), size};
    }
    std::string text() { return text(count(1)); }
    std::string text(size_t size)
    {
        std::string result(size, '\0');
        bytes(result.data(), size);
        return result;
    }
    std::wstring wideText() { return Strings::widen(text()); }

private:
    size_t possible(uint64_t count, size_t size) const
    {
        if (count > static_cast<size_t>(m_end - m_at) / size)
            throw std::runtime_error("it holds an impossible count");
        return count;
    }

    const char* m_at;
    const char* m_end;
};

class Packer
{
public:
    template <class T>
    void value(const T& value)
    {
        bytes(&value, sizeof value);
    }
    void bytes(const void* data, size_t size) { m_bytes.append(static_cast<const char*>(data), size); }
    /// Takes one byte below 128.
    void shortCount(uint64_t count);
    void text(std::string_view text)
    {
        value<uint64_t>(text.size());
        m_bytes.append(text);
    }
    void text(std::wstring_view text) { this->text(Strings::narrow(text)); }
    void shortText(std::string_view text)
    {
        shortCount(text.size());
        m_bytes.append(text);
    }
    const std::string& packed() const { return m_bytes; }

private:
    std::string m_bytes;
};

/// How a tree of components is packed: each component in a fixed number of bytes plus its texts, or, as it is
/// written now, in no more than it needs.
enum class TreeLayout { Wide, Short };

void packTree(Packer& packer, const std::vector<PartTree::Node>& roots);

/// Throws std::runtime_error if the tree is inconsistent, or shows another number of bodies.
std::vector<PartTree::Node> readTree(PackedReader& reader, size_t bodies, TreeLayout layout);

} // namespace Vs
