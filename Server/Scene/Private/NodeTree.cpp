#include "Server/Scene/Private/NodeTree.h"

#include "Server/Base/Require.h"

#include <unordered_map>

namespace Vs::Scene {

namespace {

/// Fewer children are searched as quickly one by one.
constexpr size_t kFew = 16;
/// At this many, all trees are discarded, which drops those of groups that are gone; the others are quickly
/// rebuilt.
constexpr size_t kMost = 4096;

struct Entry
{
    uint64_t revision = 0;
    std::shared_ptr<const BoxTree> tree;
};

} // namespace

std::shared_ptr<const BoxTree> childTree(const Rendra::Graphics::GroupNode& group)
{
    assertMainThread();
    if (group.children().size() < kFew)
        return nullptr;
    static std::unordered_map<uint64_t, Entry> entries;
    if (entries.size() > kMost && !entries.contains(group.id()))
        entries.clear();
    Entry& entry = entries[group.id()];
    if (entry.revision != group.placesRevision()) {
        std::vector<BoxTree::Box> boxes;
        boxes.reserve(group.children().size());
        for (const auto& child : group.children())
            boxes.push_back(BoxTree::Box::around(child->boundingBox()));
        entry = {group.placesRevision(), std::make_shared<const BoxTree>(boxes)};
    }
    return entry.tree;
}

} // namespace Vs::Scene
