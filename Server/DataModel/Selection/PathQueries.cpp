#include "Server/DataModel/Selection/PathQueries.h"

#include "Server/Base/NumberText.h"
#include "Server/Base/Require.h"
#include "Server/Base/Status.h"
#include "Server/Body/Body.h"
#include "Server/Body/PartsMesh.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Private/Texts.h"
#include "Server/DataModel/Selection/Solids.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/tokenizer.hpp>

#include <algorithm>
#include <map>
#include <span>
#include <vector>

namespace Vs {

using DataModel::localizedFormat;

namespace {

using Leaf = ObjectPath::Leaf;
using Siblings = std::span<const Component* const>;

struct LeafName
{
    Leaf leaf;
    const wchar_t* word;
};
constexpr LeafName kLeafNames[] = {
    {Leaf::Body, L"Body"}, {Leaf::Solid, L"Solid"},   {Leaf::Face, L"Face"},
    {Leaf::Edge, L"Edge"}, {Leaf::Vertex, L"Vertex"},
};

const wchar_t* wordOf(Leaf leaf)
{
    return std::find_if(std::begin(kLeafNames), std::end(kLeafNames),
                        [&](const LeafName& name) { return name.leaf == leaf; })
        ->word;
}

/// A number from 1, written with digits only; 0 for anything else.
uint32_t readCount(std::wstring_view text)
{
    return readNumber<uint32_t>(text).value_or(0);
}

using Splitter =
    boost::tokenizer<boost::escaped_list_separator<wchar_t>, std::wstring_view::const_iterator, std::wstring>;

std::optional<std::vector<std::wstring>> splitSteps(std::wstring_view text, Status& status)
{
    // The splitter finds no step at all in an empty text.
    if (text.empty())
        return std::vector<std::wstring>{L""};
    try {
        const boost::escaped_list_separator<wchar_t> slashes(L'\\', L'/', L'"');
        const Splitter steps(text.begin(), text.end(), slashes);
        return std::vector<std::wstring>(steps.begin(), steps.end());
    } catch (const boost::escaped_list_error&) {
        status.addError(localizedFormat(
            "PathEscapeWrong",
            "\"%1%\" is not a path: a backslash may only stand before a slash, a quote or another backslash.",
            std::wstring(text)));
        return std::nullopt;
    }
}

/// One step of a path, quoted where its name needs it.
std::wstring stepText(const std::wstring& name, size_t number)
{
    std::wstring text = name;
    if (text.find_first_of(L"/\"\\\n") != std::wstring::npos) {
        boost::replace_all(text, L"\\", L"\\\\");
        boost::replace_all(text, L"\"", L"\\\"");
        boost::replace_all(text, L"\n", L"\\n");
        text = L'"' + text + L'"';
    }
    return text + L':' + std::to_wstring(number);
}

/// The components from below the root to the one of this id, whose beginnings are the ids of those above it
/// (see Component::id); empty if one isn't there.
std::vector<const Component*> chainTo(const Asset& asset, const std::string& id)
{
    std::vector<const Component*> chain;
    for (size_t end = 0; end != std::string::npos;) {
        end = id.find('/', end + 1);
        chain.push_back(asset.findComponent(id.substr(0, end)));
        if (!chain.back())
            return {};
    }
    return chain;
}

/// The children of one name, in the order in which paths count them.
Siblings named(const Asset& asset, const Component& parent, std::wstring_view name)
{
    return asset.data().names(parent).named(name);
}

/// Walks from the root along the steps of a text.
class Walk
{
public:
    Walk(const Asset& asset, std::wstring_view text, Status& status)
        : m_asset(asset), m_at(asset.components()), m_text(text), m_status(status)
    {
    }

    bool step(const std::wstring& step)
    {
        if (m_path.leaf == Leaf::Component && stepToComponent(step))
            return true;
        return m_status.isOk() && (stepToLeaf(step) || unknown(step));
    }

    ObjectPath path() const { return m_path; }

private:
    bool stepToComponent(const std::wstring& step)
    {
        const size_t colon = step.rfind(L':');
        const uint32_t number = colon == std::wstring::npos ? 0 : readCount(step.substr(colon + 1));
        const Component* next = nullptr;
        if (const Siblings counted = named(m_asset, *m_at, step.substr(0, colon));
            number && number <= counted.size()) {
            next = counted[number - 1];
        } else {
            // The colon may belong to the name.
            const Siblings all = named(m_asset, *m_at, step);
            if (all.size() > 1) {
                m_status.addError(localizedFormat(
                    "PathAmbiguous",
                    "\"%1%\": \"%2%\" is ambiguous, there are %3% of that name; write %2%:1 to %2%:%3%.",
                    m_text, step, all.size()));
                return false;
            }
            if (all.empty())
                return false;
            next = all.front();
        }
        m_at = next;
        m_path.component = next->id;
        return true;
    }

    bool stepToLeaf(const std::wstring& step)
    {
        if (!m_at->body || m_path.isPartOfBody())
            return false;
        for (const LeafName& name : kLeafNames) {
            const std::wstring_view word = name.word;
            const uint32_t number = step.starts_with(word) ? readCount(step.substr(word.size())) : 0;
            // There is one body in a component.
            if (number == 0 || (name.leaf == Leaf::Body && (number > 1 || m_path.leaf == Leaf::Body)))
                continue;
            m_path.leaf = name.leaf;
            m_path.index = number - 1;
            return true;
        }
        return false;
    }

    bool unknown(const std::wstring& step)
    {
        const std::wstring where = m_path.component.empty() ? DataModel::localized("PathTop", "the model")
                                                            : L'"' + m_at->name.text() + L'"';
        std::wstring message =
            localizedFormat("PathUnknown", "\"%1%\": there is no \"%2%\" in %3%.", m_text, step, where);
        if (const std::wstring names = namesBelow(); !names.empty() && !m_path.isPartOfBody())
            message += L' ' + localizedFormat("PathOffers", "There are: %1%.", names);
        m_status.addError(message);
        return false;
    }

    /// The steps that could follow, for somebody who mistyped one; of many only the first.
    std::wstring namesBelow() const
    {
        constexpr size_t kMost = 8;
        std::wstring names;
        size_t count = 0;
        std::map<std::wstring_view, size_t> numbers;
        for (const auto& child : m_at->children) {
            if (++count > kMost)
                return names + L", \u2026";
            names += (names.empty() ? L"" : L", ") + stepText(child->name, ++numbers[child->name.text()]);
        }
        return names;
    }

    const Asset& m_asset;
    const Component* m_at;
    std::wstring m_text;
    Status& m_status;
    ObjectPath m_path;
};

/// How many of them the body's mesh has, which doesn't need the exact shape.
size_t countOf(Leaf leaf, const BodyMesh& mesh)
{
    return leaf == Leaf::Face ? mesh.faces.size() : mesh.edgeStarts.empty() ? 0 : mesh.edgeStarts.size() - 1;
}

void addNoSuchPart(const Component& component, Leaf leaf, uint32_t index, size_t count, Status& status)
{
    status.addError(localizedFormat("PathNoSuchPart", "\"%1%\" has no %2%: the last is number %3%.",
                                    component.name, wordOf(leaf) + std::to_wstring(index + 1), count));
}

bool hasSolid(const Component& component, uint32_t index, Status& status)
{
    const uint32_t count = solidCount(component);
    if (index >= count)
        addNoSuchPart(component, Leaf::Solid, index, count, status);
    return index < count;
}

} // namespace

std::optional<ObjectPath> findPath(const Asset& asset, std::wstring_view text, Status& status)
{
    assertMainThread();
    Status own;
    const auto steps = splitSteps(text, own);
    Walk walk(asset, text, own);
    const bool found = steps && std::all_of(steps->begin(), steps->end(),
                                            [&](const std::wstring& step) { return walk.step(step); });
    status.merge(own);
    const Component* component = found ? resolvePath(walk.path(), asset, status) : nullptr;
    if (!component || (walk.path().leaf == Leaf::Solid && !hasSolid(*component, walk.path().index, status)))
        return std::nullopt;
    return walk.path();
}

std::wstring pathText(const ObjectPath& path, const Asset& asset)
{
    std::wstring text;
    const Component* parent = asset.components();
    for (const Component* component : chainTo(asset, path.component)) {
        const size_t before = asset.data().names(*parent).place(*component);
        text += (text.empty() ? L"" : L"/") + stepText(component->name, before + 1);
        parent = component;
    }
    if (text.empty() || path.leaf == Leaf::Component)
        return text;
    text += std::wstring(L"/") + wordOf(Leaf::Body) + L'1';
    return path.isPartOfBody() ? text + L'/' + wordOf(path.leaf) + std::to_wstring(path.index + 1) : text;
}

std::vector<std::wstring> childPaths(const Component& component, const std::wstring& path)
{
    std::vector<std::wstring> paths;
    std::map<std::wstring_view, size_t> numbers;
    for (const auto& child : component.children)
        paths.push_back((path.empty() ? L"" : path + L'/') +
                        stepText(child->name, ++numbers[child->name.text()]));
    return paths;
}

const Component* resolvePath(const ObjectPath& path, const Asset& asset, Status& status)
{
    const Component* found = asset.findComponent(path.component);
    if (!found || (path.leaf != Leaf::Component && !found->body)) {
        status.addError(
            localizedFormat("PathStale", "The named object is no longer in \"%1%\".", asset.name()));
        return nullptr;
    }
    if (path.leaf != Leaf::Face && path.leaf != Leaf::Edge)
        return found;
    const size_t count = countOf(path.leaf, *partsMesh(found->body->mesh()));
    if (path.index < count)
        return found;
    addNoSuchPart(*found, path.leaf, path.index, count, status);
    return nullptr;
}

std::optional<GkMatrix3d> placementOf(const ObjectPath& path, const Asset& asset)
{
    GkMatrix3d result;
    const auto chain = chainTo(asset, path.component);
    for (const Component* component : chain)
        result = result * component->placement;
    return chain.empty() ? std::nullopt : std::optional(result);
}

} // namespace Vs
