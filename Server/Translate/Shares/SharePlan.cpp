#include "Server/Translate/Shares/SharePlan.h"

#include "Server/Translate/Shares/ShareBoard.h"
#include "Server/Translate/Shares/Stubs.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace Vs::Translate::Shares {

namespace {

/// Below it, readers and what they hand over cost more than they save.
constexpr uint64_t kLeastBytes = 4 << 20;
/// One that holds more of the file than this leaves too little to the others.
constexpr double kLargestPart = 0.7;
/// Smaller shares than one for each reader, so that none ends long before the others.
constexpr size_t kSharesOfReader = 4;

/// Joins what belongs together.
class Groups
{
public:
    explicit Groups(size_t count) : m_parents(count) { std::iota(m_parents.begin(), m_parents.end(), 0); }
    uint32_t of(uint32_t one)
    {
        while (m_parents[one] != one)
            one = m_parents[one] = m_parents[m_parents[one]];
        return one;
    }
    void join(uint32_t a, uint32_t b) { m_parents[of(b)] = of(a); }

private:
    std::vector<uint32_t> m_parents;
};

bool isShared(const Share& share, uint32_t place)
{
    return std::binary_search(share.items.begin(), share.items.end(), place);
}

std::string reference(uint32_t number)
{
    return '#' + std::to_string(number);
}

} // namespace

SharePlan::Kind SharePlan::kindOf(std::string_view entity)
{
    static const std::unordered_map<std::string_view, Kind> kinds = {
        {"MANIFOLD_SOLID_BREP", Kind::Item},
        {"BREP_WITH_VOIDS", Kind::Item},
        {"FACETED_BREP", Kind::Item},
        {"SHELL_BASED_SURFACE_MODEL", Kind::Item},
        {"CLOSED_SHELL", Kind::Shell},
        {"OPEN_SHELL", Kind::Shell},
        {"ADVANCED_FACE", Kind::Face},
        {"FACE_SURFACE", Kind::Face},
        {"EDGE_CURVE", Kind::Edge},
        {"VERTEX_POINT", Kind::Vertex},
        {"SHAPE_REPRESENTATION", Kind::Representation},
        {"ADVANCED_BREP_SHAPE_REPRESENTATION", Kind::Representation},
        {"FACETED_BREP_SHAPE_REPRESENTATION", Kind::Representation},
        {"MANIFOLD_SURFACE_SHAPE_REPRESENTATION", Kind::Representation},
        {"NON_MANIFOLD_SURFACE_SHAPE_REPRESENTATION", Kind::Unusual},
    };
    const auto found = kinds.find(entity);
    return found == kinds.end() ? Kind::Other : found->second;
}

std::optional<SharePlan> SharePlan::of(const StepScan& scan, const Wish& wish)
{
    SharePlan plan(scan);
    if (!plan.takeKinds())
        return std::nullopt;
    plan.findItems();
    if (!plan.divide(wish) || !plan.findStubs())
        return std::nullopt;
    return plan;
}

/// False for a file whose bodies the kernel sews together.
bool SharePlan::takeKinds()
{
    if (m_scan.head().find("I-DEAS") != std::string_view::npos ||
        m_scan.largestNumber() > std::numeric_limits<int32_t>::max() - kStandIns)
        return false;
    m_kinds.resize(m_scan.size());
    for (size_t i = 0; i < m_kinds.size(); ++i)
        m_kinds[i] = kindOf(m_scan.entity(i));
    return std::find(m_kinds.begin(), m_kinds.end(), Kind::Unusual) == m_kinds.end();
}

/// One that several representations list is of the first.
void SharePlan::findItems()
{
    std::vector<bool> isTaken(m_scan.size());
    for (uint32_t i = 0; i < m_kinds.size(); ++i) {
        // Units and tolerances come from a representation's last parameter.
        const auto references = m_scan.references(i);
        if (m_kinds[i] != Kind::Representation || references.empty() ||
            m_scan.text(references.back()).find("CONTEXT") == std::string_view::npos)
            continue;
        for (const uint32_t item : m_scan.references(i)) {
            if (m_kinds[item] != Kind::Item || isTaken[item])
                continue;
            isTaken[item] = true;
            m_items.push_back({item, i});
        }
    }
}

template <class Visit>
void SharePlan::walk(uint32_t from, std::vector<uint32_t>& seen, uint32_t mark, Visit visit) const
{
    std::vector<uint32_t> open{from};
    seen[from] = mark;
    while (!open.empty()) {
        const uint32_t one = open.back();
        open.pop_back();
        visit(one);
        for (const uint32_t next : m_scan.references(one)) {
            if (seen[next] == mark)
                continue;
            seen[next] = mark;
            open.push_back(next);
        }
    }
}

/// Also finds what items have in common, and joins those; returns the bytes of all.
uint64_t SharePlan::measureItems(std::vector<uint32_t>& joined)
{
    Groups groups(m_items.size());
    std::vector<uint32_t> seen(m_scan.size()), owners(m_scan.size());
    m_inItems.resize(m_scan.size());
    uint64_t all = 0;
    for (uint32_t i = 0; i < m_items.size(); ++i) {
        walk(m_items[i].place, seen, i + 1, [&](uint32_t one) {
            m_items[i].bytes += m_scan.whole(one).size();
            m_inItems[one] = true;
            if (!isTopology(one))
                return;
            if (owners[one] != 0)
                groups.join(owners[one] - 1, i);
            owners[one] = i + 1;
        });
        all += m_items[i].bytes;
    }
    joined.resize(m_items.size());
    for (uint32_t i = 0; i < m_items.size(); ++i)
        joined[i] = groups.of(i);
    return all;
}

bool SharePlan::divide(const Wish& wish)
{
    std::vector<uint32_t> joined;
    m_bytes = measureItems(joined);
    Groups groups(m_items.size());
    for (uint32_t i = 0; i < m_items.size(); ++i)
        groups.join(joined[i], i);
    // What one representation shows is one body, and meshed as such, unless the others would wait for it.
    std::unordered_map<uint32_t, std::pair<uint32_t, uint64_t>>
        representations; // Their first items and bytes.
    for (uint32_t i = 0; i < m_items.size(); ++i)
        representations.try_emplace(m_items[i].representation, i, 0).first->second.second += m_items[i].bytes;
    for (uint32_t i = 0; i < m_items.size(); ++i)
        if (const auto& [first, bytes] = representations.at(m_items[i].representation);
            bytes * wish.readers <= m_bytes)
            groups.join(first, i);

    std::unordered_map<uint32_t, Share> all;
    for (uint32_t i = 0; i < m_items.size(); ++i) {
        Share& share = all[groups.of(i)];
        share.items.push_back(i);
        share.bytes += m_items[i].bytes;
    }
    std::vector<Share> pieces;
    for (auto& [group, share] : all)
        pieces.push_back(std::move(share));
    std::sort(pieces.begin(), pieces.end(), [](const Share& a, const Share& b) {
        return a.bytes != b.bytes ? a.bytes > b.bytes : a.items < b.items;
    });
    if (pieces.size() < 2 || (!wish.isAlways && (m_bytes < kLeastBytes ||
                                                 double(pieces[0].bytes) > kLargestPart * double(m_bytes))))
        return false;
    m_shares.resize(std::min({pieces.size(), kMostShares, wish.readers * kSharesOfReader}));
    const auto isSmaller = [](const Share& a, const Share& b) { return a.bytes < b.bytes; };
    for (const Share& piece : pieces) {
        Share& share = *std::min_element(m_shares.begin(), m_shares.end(), isSmaller);
        share.items.insert(share.items.end(), piece.items.begin(), piece.items.end());
        share.bytes += piece.bytes;
    }
    for (Share& share : m_shares) {
        for (uint32_t& item : share.items)
            item = m_items[item].place;
        std::sort(share.items.begin(), share.items.end());
    }
    std::sort(m_shares.begin(), m_shares.end(),
              [&](const Share& a, const Share& b) { return isSmaller(b, a); });
    return true;
}

/// False if the structure has a shape of its own that consists of what is in an item.
bool SharePlan::findStubs()
{
    m_kept.resize(m_scan.size());
    m_stubs.resize(m_scan.size());
    std::vector<uint32_t> open;
    for (uint32_t i = 0; i < m_scan.size(); ++i)
        if (!m_inItems[i])
            open.push_back(i);
    while (!open.empty()) {
        const uint32_t one = open.back();
        open.pop_back();
        for (const uint32_t next : m_scan.references(one)) {
            if (!m_inItems[next] || m_kept[next])
                continue;
            if (!m_inItems[one] && isTopology(one))
                return false;
            m_kept[next] = true;
            m_stubs[next] = isTopology(next);
            if (!m_stubs[next])
                open.push_back(next);
        }
    }
    return true;
}

std::string SharePlan::structure() const
{
    std::string text(m_scan.head());
    text += '\n';
    for (uint32_t i = 0; i < m_scan.size(); ++i) {
        if (m_stubs[i])
            text += stubOf({m_scan.entity(i), m_scan.number(i), nameIn(m_scan.text(i))},
                           m_scan.largestNumber() + 1);
        else if (!m_inItems[i] || m_kept[i])
            text.append(m_scan.whole(i)) += '\n';
    }
    text += standIns(m_scan.largestNumber() + 1);
    return text + "ENDSEC;\nEND-ISO-10303-21;\n";
}

std::vector<bool> SharePlan::closureOf(const Share& share) const
{
    std::vector<bool> in(m_scan.size());
    std::vector<uint32_t> seen(m_scan.size());
    const auto take = [&](uint32_t from) { walk(from, seen, 1, [&](uint32_t one) { in[one] = true; }); };
    for (const uint32_t item : share.items)
        if (!in[item])
            take(item);
    return in;
}

std::vector<SharedRepresentation> SharePlan::representations(const Share& share) const
{
    std::vector<SharedRepresentation> all;
    for (const Item& item : m_items) {
        // Items lie here by their representations.
        const uint32_t number = m_scan.number(item.representation);
        if (!isShared(share, item.place) || (!all.empty() && all.back().number == number))
            continue;
        SharedRepresentation& one = all.emplace_back(SharedRepresentation{.number = number});
        const auto references = m_scan.references(item.representation);
        one.context = m_scan.number(references.back());
        for (const uint32_t shown : references.first(references.size() - 1)) {
            if (isShared(share, shown))
                one.items.push_back(m_scan.number(shown));
            else if (m_scan.entity(shown) != "AXIS2_PLACEMENT_3D")
                one.isWhole = false;
        }
    }
    return all;
}

std::string SharePlan::text(const Share& share, bool named) const
{
    std::vector<bool> in = closureOf(share);
    std::vector<uint32_t> seen(m_scan.size());
    for (const Item& item : m_items)
        if (const uint32_t context = m_scan.references(item.representation).back();
            isShared(share, item.place) && !in[context])
            walk(context, seen, 1, [&](uint32_t one) { in[one] = true; });
    std::string shown;
    for (const SharedRepresentation& one : representations(share)) {
        std::string list;
        for (const uint32_t item : one.items)
            list += (list.empty() ? "" : ",") + reference(item);
        shown += reference(one.number) + "=SHAPE_REPRESENTATION('',(" + list + ")," + reference(one.context) +
                 ");\n";
    }
    std::string text(m_scan.head());
    text.reserve(share.bytes + share.bytes / 8);
    text += '\n';
    for (uint32_t i = 0; i < m_scan.size(); ++i) {
        if (!in[i])
            continue;
        const std::string_view whole = m_scan.whole(i);
        if (!named || !isShared(share, i) || whole.find('\'') == whole.npos) {
            text.append(whole) += '\n';
            continue;
        }
        const std::string_view name = nameIn(whole);
        const auto begin = static_cast<size_t>(name.data() - whole.data());
        text.append(whole.substr(0, begin)) += '\'' + partOf(i) + '\'';
        text.append(whole.substr(begin + name.size())) += '\n';
    }
    return text + shown + "ENDSEC;\nEND-ISO-10303-21;\n";
}

std::vector<uint32_t> SharePlan::wanted(const Share& share) const
{
    const std::vector<bool> in = closureOf(share);
    std::vector<uint32_t> numbers;
    for (uint32_t i = 0; i < m_scan.size(); ++i)
        if (in[i] && m_stubs[i])
            numbers.push_back(m_scan.number(i));
    return numbers;
}

size_t SharePlan::facesOf(uint32_t item) const
{
    size_t faces = 0;
    std::vector<uint32_t> seen(m_scan.size());
    walk(item, seen, 1, [&](uint32_t one) { faces += m_kinds[one] == Kind::Face; });
    return faces;
}

std::string SharePlan::partOf(uint32_t item) const
{
    // From the item over its representation, another that says the same of the same part, and the part's
    // definition to its product: whatever refers to it, in so many steps.
    const auto entityIs = [&](uint32_t i, std::string_view entity) { return m_scan.entity(i) == entity; };
    std::vector<bool> shows(m_scan.size());
    std::vector<uint32_t> definitions;
    shows[item] = true;
    for (const Item& one : m_items)
        if (one.place == item)
            shows[one.representation] = true;
    constexpr int kRounds = 2; // The first finds relationships, the second what they lead to.
    for (int round = 0; round < kRounds; ++round)
        for (uint32_t i = 0; i < m_scan.size(); ++i) {
            const auto references = m_scan.references(i);
            if (references.size() != 2)
                continue;
            if (entityIs(i, "SHAPE_REPRESENTATION_RELATIONSHIP") &&
                (shows[references[0]] || shows[references[1]]))
                shows[references[0]] = shows[references[1]] = true;
            else if (round + 1 == kRounds && entityIs(i, "SHAPE_DEFINITION_REPRESENTATION") &&
                     shows[references[1]])
                definitions.push_back(references[0]);
        }
    for (uint32_t one : definitions) {
        constexpr int kSteps = 8;
        for (int step = 0; step < kSteps && !entityIs(one, "PRODUCT") && !m_scan.references(one).empty();
             ++step)
            one = m_scan.references(one)[0];
        if (entityIs(one, "PRODUCT"))
            item = one;
    }
    const std::string_view name = nameIn(m_scan.text(item));
    return std::string(name.substr(1, name.size() - 2));
}

} // namespace Vs::Translate::Shares
