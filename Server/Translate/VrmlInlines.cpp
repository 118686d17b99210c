#include "Server/Translate/VrmlInlines.h"

#include "Server/Translate/Beside.h"
#include "Server/Translate/MappedFile.h"
#include "Server/Translate/Reading.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace Vs::Translate {

namespace {

constexpr std::string_view kNode = "Inline", kEmptyNode = "Group ";
static_assert(kNode.size() == kEmptyNode.size());

/// After the string that begins at `at`.
size_t takeString(std::string_view text, size_t at, std::string& string)
{
    for (++at; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] == '\\' && at + 1 < text.size())
            ++at;
        string.push_back(text[at]);
    }
    return at + 1;
}

/// Accepts more as one than the kernel would, and never less.
std::vector<VrmlInlineNode> nodesIn(std::string_view text)
{
    std::vector<VrmlInlineNode> nodes;
    for (size_t at = text.find(kNode); at != std::string_view::npos; at = text.find(kNode, at + 1))
        nodes.push_back(vrmlInlineAt(text, at));
    return nodes;
}

class Visitor
{
public:
    explicit Visitor(const std::string& file) : m_file(file) { m_open.insert(canonical(file)); }

    /// Whether the node inlines files next to this one, directly or through others.
    bool mayStay(const VrmlInlineNode& node)
    {
        return std::all_of(node.urls.begin(), node.urls.end(),
                           [&](const std::string& url) { return follow(url); });
    }

    VrmlInlines found;

private:
    static std::string canonical(const std::string& path)
    {
        std::error_code ignored;
        return std::filesystem::weakly_canonical(path, ignored).string();
    }

    bool refuse(const std::string& url)
    {
        if (std::find(found.refused.begin(), found.refused.end(), url) == found.refused.end())
            found.refused.push_back(url);
        return false;
    }

    bool follow(const std::string& url)
    {
        // The kernel looks for all of them from the folder of the first.
        const std::string path = (std::filesystem::path(m_file).parent_path() / url).string();
        const std::string place = canonical(path);
        if (!liesBeside(m_file, path) || m_open.contains(place))
            return refuse(url);
        found.files.push_back(path);
        if (m_sound.contains(place))
            return true;
        m_open.insert(place);
        const bool sound = holdsNoOther(path);
        m_open.erase(place);
        if (sound)
            m_sound.insert(place);
        return sound;
    }

    bool holdsNoOther(const std::string& path)
    {
        try {
            const MappedFile file(path);
            const std::vector<VrmlInlineNode> nodes = nodesIn(file.bytes());
            return std::all_of(nodes.begin(), nodes.end(),
                               [&](const VrmlInlineNode& node) { return mayStay(node); });
        } catch (const Unreadable&) {
            return true; // The kernel reports it.
        }
    }

    std::string m_file;
    std::set<std::string> m_open, m_sound;
};

} // namespace

VrmlInlineNode vrmlInlineAt(std::string_view text, size_t begin)
{
    VrmlInlineNode node{begin, text.size(), text.size(), {}};
    for (size_t at = begin + kNode.size(); at < text.size();) {
        const char c = text[at];
        if (c == '"') {
            at = takeString(text, at, node.urls.emplace_back());
            continue;
        }
        if (c == '#')
            at = std::min(text.find('\n', at), text.size());
        else if (c == '{' && node.body == text.size())
            node.body = at + 1;
        else if (c == '}') {
            node.end = at;
            break;
        }
        ++at;
    }
    node.body = std::min(node.body, node.end);
    return node;
}

VrmlInlines vrmlInlines(std::string_view text, const std::string& file)
{
    Visitor visitor(file);
    for (const VrmlInlineNode& node : nodesIn(text)) {
        if (visitor.mayStay(node))
            continue;
        std::string& changed = visitor.found.text;
        if (changed.empty())
            changed = text;
        changed.replace(node.begin, kEmptyNode.size(), kEmptyNode);
        // Line breaks stay, since messages count lines.
        for (size_t at = node.body; at < node.end; ++at)
            if (changed[at] != '\n')
                changed[at] = ' ';
    }
    return std::move(visitor.found);
}

} // namespace Vs::Translate
