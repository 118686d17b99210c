#include "Server/DataModel/Model/PackedTree.h"

#include "Server/Component/ComponentIds.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace Vs {

namespace {

// A tree from outside may have any depth; ours never come near this one.
constexpr int kDeepestTree = 1000;

constexpr int kBitsOfByte = 7; // of a short count; the eighth tells that more follow
constexpr uint8_t kMore = 1 << kBitsOfByte;

// A component's place is stored as its matrix without the last row, which is the same for all motions; for a
// pure shift as the last column, and for no motion as nothing.
enum Flags : uint8_t { Visible = 1, Coloured = 2, BelowParent = 4, Shifted = 8, Turned = 16, Projected = 32 };
constexpr size_t kRows = 3, kColumns = 4;

/// Bit for bit: what is read back is what was written, including the signs of zeros.
template <size_t kCount>
bool isSame(const double* a, const double* b)
{
    return std::equal(a, a + kCount, b, [](double x, double y) {
        return std::bit_cast<uint64_t>(x) == std::bit_cast<uint64_t>(y);
    });
}

bool isSame(const GkMatrix3d& a, const GkMatrix3d& b)
{
    return isSame<16>(&a.entry[0][0], &b.entry[0][0]);
}

uint8_t kindOf(const GkMatrix3d& placement)
{
    GkMatrix3d other;
    if (isSame(placement, other))
        return 0;
    for (size_t row = 0; row < kRows; ++row)
        other.entry[row][kColumns - 1] = placement.entry[row][kColumns - 1];
    if (isSame(placement, other))
        return Shifted;
    return isSame<kColumns>(placement.entry[kRows], other.entry[kRows]) ? Turned : Projected;
}

void packPlacement(Packer& packer, const GkMatrix3d& placement, uint8_t kind)
{
    if (kind == Shifted)
        for (size_t row = 0; row < kRows; ++row)
            packer.value(placement.entry[row][kColumns - 1]);
    else if (kind != 0)
        packer.bytes(placement.entry,
                     kind == Turned ? sizeof placement.entry[0] * kRows : sizeof placement.entry);
}

void pack(Packer& packer, const std::vector<PartTree::Node>& nodes, const std::string& parent)
{
    packer.shortCount(nodes.size());
    for (const PartTree::Node& node : nodes) {
        const std::string place = placeOf(node.id);
        const bool isBelow =
            node.id == (parent.empty() ? place : std::string(parent).append(1, '/').append(place));
        const uint8_t kind = kindOf(node.placement);
        packer.value(static_cast<uint8_t>((node.visible ? Visible : 0) | (node.colour ? Coloured : 0) |
                                          (isBelow ? BelowParent : 0) | kind));
        packer.shortText(isBelow ? place : node.id);
        packer.shortText(Strings::narrow(node.name));
        packPlacement(packer, node.placement, kind);
        if (node.colour)
            packer.value(*node.colour);
        packer.value(node.body);
        pack(packer, node.children, node.id);
    }
}

class TreeReader
{
public:
    TreeReader(PackedReader& reader, size_t bodies, TreeLayout layout)
        : m_reader(reader), m_bodies(bodies), m_layout(layout)
    {
    }

    std::vector<PartTree::Node> nodes(const std::string& parent, int depth)
    {
        if (depth > kDeepestTree)
            throw std::runtime_error("its tree is too deep");
        std::vector<PartTree::Node> nodes;
        const size_t count =
            m_layout == TreeLayout::Wide ? m_reader.count(kLeastWide) : m_reader.shortCount(kLeastShort);
        // What each claims may be there, but not what all of them claim together.
        nodes.reserve(std::min(count, kReserved));
        int before = 0;
        for (size_t i = 0; i < count; ++i) {
            PartTree::Node node = m_layout == TreeLayout::Wide ? wideNode() : shortNode(parent);
            // Components are found by their ids, which lead from parent to child in this order.
            const size_t begin = parent.empty() ? 0 : parent.size() + 1;
            const int own = lastNumber(node.id);
            if (!node.id.starts_with(parent) || node.id.rfind('/') + 1 != begin || own <= before)
                throw std::runtime_error("its tree is out of order");
            before = own;
            if (node.body < -1 || node.body >= static_cast<int64_t>(m_bodies))
                throw std::runtime_error("a component shows a body that isn't there");
            node.children = this->nodes(node.id, depth + 1);
            nodes.push_back(std::move(node));
        }
        return nodes;
    }

private:
    // Of empty texts and nothing below.
    static constexpr size_t kLeastWide =
        3 * sizeof(uint64_t) + sizeof(GkMatrix3d::entry) + sizeof(Colour) + sizeof(int32_t) + 2;
    static constexpr size_t kLeastShort = 4 + sizeof(int32_t);
    static constexpr size_t kReserved = 256;

    PartTree::Node wideNode()
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
        node.visible = m_reader.value<uint8_t>() != 0;
        return node;
    }

    PartTree::Node shortNode(const std::string& parent)
    {
        PartTree::Node node;
        const uint8_t flags = m_reader.value<uint8_t>();
        node.id = m_reader.text(m_reader.shortCount(1));
        if (flags & BelowParent && !parent.empty())
            node.id.insert(0, parent + '/');
        node.name = Strings::widen(m_reader.text(m_reader.shortCount(1)));
        auto& entry = node.placement.entry;
        if (flags & Shifted)
            for (size_t row = 0; row < kRows; ++row)
                entry[row][kColumns - 1] = m_reader.value<double>();
        else if (flags & (Turned | Projected))
            m_reader.bytes(entry, flags & Turned ? sizeof entry[0] * kRows : sizeof entry);
        if (flags & Coloured)
            node.colour = m_reader.value<Colour>();
        node.body = m_reader.value<int32_t>();
        node.visible = flags & Visible;
        return node;
    }

    PackedReader& m_reader;
    size_t m_bodies;
    TreeLayout m_layout;
};

} // namespace

size_t PackedReader::shortCount(size_t size)
{
    uint64_t count = 0;
    for (int shift = 0;; shift += kBitsOfByte) {
        const auto byte = value<uint8_t>();
        if (shift + kBitsOfByte > 63)
            throw std::runtime_error("it holds an impossible count");
        count |= uint64_t(byte & (kMore - 1)) << shift;
        if (!(byte & kMore))
            return possible(count, size);
    }
}

void Packer::shortCount(uint64_t count)
{
    for (; count >= kMore; count >>= kBitsOfByte)
        value(static_cast<uint8_t>(count | kMore));
    value(static_cast<uint8_t>(count));
}

void packTree(Packer& packer, const std::vector<PartTree::Node>& roots)
{
    pack(packer, roots, {});
}

std::vector<PartTree::Node> readTree(PackedReader& reader, size_t bodies, TreeLayout layout)
{
    return TreeReader(reader, bodies, layout).nodes({}, 0);
}

} // namespace Vs
