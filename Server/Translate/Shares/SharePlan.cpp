#include "Server/Translate/Shares/SharePlan.h"

#include "Server/Translate/Shares/ShareBoard.h"
#include "Server/Translate/Shares/Stubs.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace Vs::Translate::Shares {

namespace {

/// Below this, the cost of readers and of handing over results exceeds the gain.
constexpr uint64_t kLeastBytes = 4 << 20;
/// One that contains more of the file than this leaves too little for the others.
constexpr double kLargestPart = 0.7;
/// Smaller shares than one per reader, so that none finishes long before the others.
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

bool isAmong(const Items& items, uint32_t place)
{
    return std::binary_search(items.begin(), items.end(), place);
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

/// One listed by several representations belongs to the first.
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
            m_representations[item] = i;
        }
    }
}

/// Adds what can be reached and isn't marked yet.
void SharePlan::follow(uint32_t from, uint32_t mark, std::vector<uint32_t>& found) const
{
    if (m_seen[from] == mark)
        return;
    m_seen[from] = mark;
    size_t next = found.size();
    for (found.push_back(from); next < found.size(); ++next) {
        for (const uint32_t one : m_scan.references(found[next])) {
            if (m_seen[one] == mark)
                continue;
            m_seen[one] = mark;
            found.push_back(one);
        }
    }
}

/// Also finds what items have in common, and joins those; returns the bytes of all.
uint64_t SharePlan::measureItems(std::vector<uint32_t>& joined)
{
    Groups groups(m_items.size());
    std::vector<uint32_t> owners(m_scan.size()), closure;
    m_seen.resize(m_scan.size());
    m_inItems.resize(m_scan.size());
    uint64_t all = 0;
    for (uint32_t i = 0; i < m_items.size(); ++i) {
        closure.clear();
        follow(m_items[i].place, ++m_mark, closure);
        for (const uint32_t one : closure) {
            m_items[i].bytes += m_scan.whole(one).size();
            m_inItems[one] = true;
            if (!isTopology(one))
                continue;
            if (owners[one] != 0)
                groups.join(owners[one] - 1, i);
            owners[one] = i + 1;
        }
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
    const uint64_t bytes = measureItems(joined);
    Groups groups(m_items.size());
    for (uint32_t i = 0; i < m_items.size(); ++i)
        groups.join(joined[i], i);
    // What one representation shows is one body, and meshed as such, unless the others would have to wait for
    // it.
    std::unordered_map<uint32_t, std::pair<uint32_t, uint64_t>>
        representations; // Their first items and bytes.
    for (uint32_t i = 0; i < m_items.size(); ++i)
        representations.try_emplace(m_items[i].representation, i, 0).first->second.second += m_items[i].bytes;
    for (uint32_t i = 0; i < m_items.size(); ++i)
        if (const auto& [first, ofOne] = representations.at(m_items[i].representation);
            ofOne * wish.readers <= bytes)
            groups.join(first, i);

    std::unordered_map<uint32_t, Piece> all;
    for (uint32_t i = 0; i < m_items.size(); ++i) {
        Piece& piece = all[groups.of(i)];
        piece.items.push_back(m_items[i].place);
        piece.bytes += m_items[i].bytes;
    }
    for (auto& [group, piece] : all) {
        std::sort(piece.items.begin(), piece.items.end());
        m_pieces.push_back(std::move(piece));
    }
    std::sort(m_pieces.begin(), m_pieces.end(), [](const Piece& a, const Piece& b) {
        return a.bytes != b.bytes ? a.bytes > b.bytes : a.items < b.items;
    });
    return m_pieces.size() > 1 &&
           (wish.isAlways ||
            (bytes >= kLeastBytes && double(m_pieces[0].bytes) <= kLargestPart * double(bytes)));
}

std::vector<Share> SharePlan::shares(const std::vector<uint32_t>& pieces, size_t readers) const
{
    std::vector<Share> shares(std::min({pieces.size(), kMostShares - 1, readers * kSharesOfReader}));
    for (const uint32_t piece : pieces) {
        Share& share = *std::min_element(shares.begin(), shares.end(),
                                         [](const Share& a, const Share& b) { return a.bytes < b.bytes; });
        share.pieces.push_back(piece);
        share.bytes += m_pieces[piece].bytes;
    }
    std::sort(shares.begin(), shares.end(), [](const Share& a, const Share& b) { return a.bytes > b.bytes; });
    return shares;
}

/// False if the structure itself has a shape that uses parts of an item.
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

std::vector<uint32_t> SharePlan::closureOf(const Items& items) const
{
    std::vector<uint32_t> closure;
    const uint32_t mark = ++m_mark;
    for (const uint32_t item : items)
        follow(item, mark, closure);
    return closure;
}

std::vector<SharePlan::Shown> SharePlan::shown(const Items& items) const
{
    std::vector<uint32_t> places;
    for (const uint32_t item : items)
        places.push_back(m_representations.at(item));
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    std::vector<Shown> all;
    for (const uint32_t place : places) {
        const auto references = m_scan.references(place);
        Shown& one = all.emplace_back(Shown{.representation = place, .context = references.back()});
        for (const uint32_t shown : references.first(references.size() - 1)) {
            if (isAmong(items, shown))
                one.items.push_back(shown);
            else if (m_scan.entity(shown) != "AXIS2_PLACEMENT_3D")
                one.isWhole = false;
        }
    }
    return all;
}

std::vector<SharedRepresentation> SharePlan::representations(const Items& items) const
{
    std::vector<SharedRepresentation> all;
    for (const Shown& shown : SharePlan::shown(items)) {
        SharedRepresentation& one = all.emplace_back();
        one.number = m_scan.number(shown.representation);
        one.context = m_scan.number(shown.context);
        one.isWhole = shown.isWhole;
        for (const uint32_t item : shown.items)
            one.items.push_back(m_scan.number(item));
    }
    return all;
}

std::string SharePlan::text(const Items& items, bool named) const
{
    std::vector<uint32_t> places;
    const uint32_t mark = ++m_mark;
    for (const uint32_t item : items) {
        follow(item, mark, places);
        follow(m_scan.references(m_representations.at(item)).back(), mark, places);
    }
    std::sort(places.begin(), places.end());
    std::string shown;
    for (const SharedRepresentation& one : representations(items)) {
        std::string list;
        for (const uint32_t item : one.items)
            list += (list.empty() ? "" : ",") + reference(item);
        shown += reference(one.number) + "=SHAPE_REPRESENTATION('',(" + list + ")," + reference(one.context) +
                 ");\n";
    }
    std::string text(m_scan.head());
    text += '\n';
    for (const uint32_t i : places) {
        const std::string_view whole = m_scan.whole(i);
        if (!named || !isAmong(items, i) || whole.find('\'') == whole.npos) {
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

size_t SharePlan::facesOf(uint32_t item) const
{
    const std::vector<uint32_t> closure = closureOf({item});
    return static_cast<size_t>(std::count_if(closure.begin(), closure.end(),
                                             [this](uint32_t one) { return m_kinds[one] == Kind::Face; }));
}

std::string SharePlan::partOf(uint32_t item) const
{
    // From the item via its representation, another one related to it for the same part, and the part's
    // definition to its product: by following that many references backwards.
    const auto entityIs = [&](uint32_t i, std::string_view entity) { return m_scan.entity(i) == entity; };
    std::vector<bool> shows(m_scan.size());
    std::vector<uint32_t> definitions;
    shows[item] = true;
    shows[m_representations.at(item)] = true;
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
