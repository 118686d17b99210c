#include "Server/Translate/GltfNodes.h"

#include "Server/Translate/Reading.h"

#include <boost/iostreams/device/array.hpp>
#include <boost/iostreams/stream.hpp>
#include <boost/property_tree/json_parser.hpp>

#include <algorithm>
#include <charconv>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

namespace Vs::Translate {

namespace {

using Nodes = std::vector<std::vector<size_t>>; ///< The children of each node.

/// Yields the numbers in the text's lists that are members of that name; false from `take` stops. Returns how
/// many members there are.
size_t eachNumber(std::string_view json, std::string_view member, const std::function<bool(size_t)>& take)
{
    size_t members = 0;
    for (size_t at = json.find(member); at != json.npos; at = json.find(member, at), ++members) {
        at += member.size();
        const size_t begin = json.find_first_not_of(" \t\r\n:[", at);
        const size_t end = std::min(json.find_first_not_of(" \t\r\n,0123456789", begin), json.size());
        for (at = std::min(begin, end); at < end;) {
            size_t number = 0;
            const auto [behind, error] = std::from_chars(json.data() + at, json.data() + end, number);
            at += error == std::errc() ? static_cast<size_t>(behind - (json.data() + at)) : 1;
            if (error == std::errc() && !take(number))
                return members;
        }
    }
    return members;
}

// Whether the text may be one that the kernel can't cope with. Reading all of it takes time, and hardly any
// file is one: if each node is in at most one other, and few contain others, there is nothing to find.
bool isSuspicious(std::string_view json)
{
    std::unordered_set<size_t> named;
    bool tree = true;
    const auto take = [&](size_t node) { return tree = named.insert(node).second; };
    const size_t holders = eachNumber(json, "\"children\"", take);
    if (tree)
        eachNumber(json, "\"nodes\"", take);
    return !tree || holders >= kMostLevels;
}

Nodes nodesOf(std::string_view json)
{
    boost::iostreams::stream<boost::iostreams::array_source> stream(json.data(), json.size());
    boost::property_tree::ptree file;
    boost::property_tree::read_json(stream, file);
    const boost::property_tree::ptree none;
    Nodes nodes;
    for (const auto& [name, node] : file.get_child("nodes", none)) {
        nodes.emplace_back();
        for (const auto& [noName, child] : node.get_child("children", none))
            nodes.back().push_back(child.get_value<size_t>());
    }
    return nodes;
}

/// Descends without recursion, however deep that is.
class Walk
{
public:
    explicit Walk(const Nodes& nodes) : m_nodes(nodes), m_known(nodes.size()) {}

    void from(size_t root)
    {
        enter(root);
        while (!m_open.empty()) {
            Level& level = m_open.back();
            const std::vector<size_t>& children = m_nodes[level.node];
            if (level.next < children.size())
                enter(children[level.next++]);
            else
                leave();
        }
    }

private:
    struct Level
    {
        size_t node, next = 0;
    };
    struct Known
    {
        uint64_t parts = 0; ///< 0 if it hasn't been left yet.
        size_t levels = 0;
        bool open = false;
    };

    void enter(size_t node)
    {
        if (node >= m_nodes.size())
            return;
        if (m_known[node].open)
            throw Unreadable("holds a node that contains itself: number " + std::to_string(node));
        if (m_known[node].parts == 0) {
            m_known[node].open = true;
            m_open.push_back({node});
        }
    }

    void leave()
    {
        const size_t node = m_open.back().node;
        m_open.pop_back();
        Known& known = m_known[node];
        known.open = false;
        for (const size_t child : m_nodes[node]) {
            if (child >= m_nodes.size())
                continue;
            known.parts += m_known[child].parts;
            known.levels = std::max(known.levels, m_known[child].levels);
        }
        known.parts = std::max<uint64_t>(known.parts, 1);
        checkLimits(++known.levels, known.parts);
    }

    const Nodes& m_nodes;
    std::vector<Known> m_known;
    std::vector<Level> m_open;
};

} // namespace

void checkGltfNodes(std::string_view json)
try {
    if (!isSuspicious(json))
        return;
    const Nodes nodes = nodesOf(json);
    Walk walk(nodes);
    for (size_t i = 0; i < nodes.size(); ++i)
        walk.from(i);
} catch (const boost::property_tree::ptree_error&) {
    // The kernel reports what is wrong.
}

} // namespace Vs::Translate
