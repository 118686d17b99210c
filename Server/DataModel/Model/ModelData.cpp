#include "Server/DataModel/Model/ModelData.h"

#include "Server/DataModel/Model/ModelBody.h"

#include <algorithm>
#include <exception>
#include <ostream>
#include <sstream>

namespace Vs {

ModelData::ModelData(const std::wstring& name)
    : m_source(std::make_shared<ModelSource>()),
      m_root(std::make_unique<Component>()),
      m_history(*m_source, m_settings)
{
    m_root->name = name;
}

ModelData::~ModelData() = default;

const Component* ModelData::find(const std::string& id) const
{
    const auto found = m_components.find(id);
    return found == m_components.end() ? nullptr : found->second;
}

void ModelData::load(std::shared_ptr<const ModelFile> file)
{
    const PartTree& tree = file->tree();
    m_stored = StoredPart{file->file(), file->place(), file->size(), file->hash(), std::nullopt};
    m_source->file = std::move(file);
    std::vector<StrongRef<ModelBody>> bodies;
    for (size_t i = 0; i < tree.bodies.size(); ++i) {
        bodies.push_back(makeStrong<ModelBody>(m_source, tree.bodies[i], static_cast<int>(i)));
        m_bodies[tree.bodies[i].entry] = bodies.back();
    }
    const auto build = [&](const auto& self, Component& parent,
                           const std::vector<PartTree::Node>& nodes) -> void {
        parent.children.reserve(nodes.size());
        for (const PartTree::Node& node : nodes) {
            auto component = std::make_unique<Component>();
            component->id = node.id;
            component->name = node.name;
            component->placement = node.placement;
            component->colour = node.colour;
            component->visible = node.visible;
            if (node.body >= 0)
                component->body = bodies[node.body];
            m_components[node.id] = component.get();
            self(self, *component, node.children);
            parent.children.push_back(std::move(component));
        }
    };
    build(build, *m_root, tree.roots);
}

StrongRef<ModelBody> ModelData::bodyOf(const PartTree& tree, size_t index)
{
    const PartTree::Body& part = tree.bodies[index];
    StrongRef<ModelBody>& known = m_bodies[part.entry];
    // A body that came from a file meets its shape here for the first time.
    if (known && known->revision() == 0)
        known->revision(part.revision);
    // An entry may be used again after an undo, for quite another shape.
    if (!known || known->revision() != part.revision)
        known = makeStrong<ModelBody>(m_source, part, -1);
    return known;
}

void ModelData::stored(StoredPart part)
{
    if (part.size != 0)
        m_stored = std::move(part);
}

namespace {

constexpr double kMeshesShare = 0.5; // of the time that writing takes

// The kernel writes to a stream in which it goes back and forth, and hears of trouble only by the stream's
// state; what the trouble was is kept for the one who asked.
class KernelBuffer : public std::stringbuf
{
public:
    explicit KernelBuffer(const ModelData::Watch& watch) : std::stringbuf(std::ios_base::out), m_watch(watch)
    {
    }

    void rethrow() const
    {
        if (m_trouble)
            std::rethrow_exception(m_trouble);
    }

private:
    std::streamsize xsputn(const char* data, std::streamsize size) override
    {
        constexpr std::streamsize kStep = 1 << 20;
        try {
            if ((m_written += size) - m_told > kStep) {
                m_told = m_written;
                m_watch(kMeshesShare);
            }
            return std::stringbuf::xsputn(data, size);
        } catch (...) {
            m_trouble = std::current_exception();
            return 0;
        }
    }

    const ModelData::Watch& m_watch;
    std::streamsize m_written = 0, m_told = 0;
    std::exception_ptr m_trouble;
};

} // namespace

uint64_t ModelData::write(ModelSink& sink, const Watch& watch)
{
    const PartTree tree = m_source->withKernel([](ModelKernel& kernel) { return kernel.tree(); });
    ModelFileWriter writer(sink);
    for (size_t i = 0; i < tree.bodies.size(); ++i) {
        watch(kMeshesShare * double(i) / double(tree.bodies.size()));
        writer.addMesh(bodyOf(tree, i)->mesh().get());
    }
    writer.writeIndex(tree, {});
    KernelBuffer buffer(watch);
    std::ostream stream(&buffer);
    try {
        m_source->withKernel([&](ModelKernel& kernel) { kernel.write(stream); });
    } catch (const std::runtime_error&) {
        buffer.rethrow();
        throw;
    }
    buffer.rethrow();
    writer.addKernelData(buffer.view());
    return writer.finish();
}

struct ModelData::Merge
{
    const PartTree& tree;
    std::vector<StrongRef<ModelBody>> bodies;
    std::vector<bool> bodyChanged;
    ComponentsEvent::Changes changes;
};

ComponentsEvent::Changes ModelData::refresh()
{
    const PartTree tree = m_source->withKernel([](ModelKernel& kernel) { return kernel.tree(); });
    Merge merge{tree, {}, {}, {}};
    std::map<std::string, StrongRef<ModelBody>> still;
    for (size_t i = 0; i < tree.bodies.size(); ++i) {
        merge.bodies.push_back(bodyOf(tree, i));
        merge.bodyChanged.push_back(merge.bodies.back()->update(tree.bodies[i]));
        still[tree.bodies[i].entry] = merge.bodies.back();
    }
    mergeChildren(merge, *m_root, tree.roots);
    m_bodies = std::move(still);
    return std::move(merge.changes);
}

void ModelData::forget(const Component& component)
{
    m_components.erase(component.id);
    for (const auto& child : component.children)
        forget(*child);
}

void ModelData::mergeChildren(Merge& merge, Component& parent, const std::vector<PartTree::Node>& nodes)
{
    std::unordered_map<std::string_view, std::unique_ptr<Component>> old;
    for (auto& child : parent.children) {
        const std::string_view id = child->id;
        old[id] = std::move(child);
    }
    std::vector<std::unique_ptr<Component>> children;
    for (const PartTree::Node& node : nodes) {
        std::unique_ptr<Component> component;
        const auto known = old.find(node.id);
        bool changed = false;
        const bool isNew = known == old.end() || !known->second;
        if (isNew) {
            component = std::make_unique<Component>();
            component->id = node.id;
            m_components[node.id] = component.get();
        } else {
            component = std::move(known->second);
            old.erase(known);
        }
        const auto take = [&](auto& target, auto value) {
            changed |= !(target == value);
            target = std::move(value);
        };
        take(component->name, node.name);
        changed |= !component->placement.isEqualTo(node.placement, {0, 0});
        component->placement = node.placement;
        take(component->colour, node.colour);
        take(component->visible, node.visible);
        StrongRef<Body> body;
        if (node.body >= 0) {
            body = merge.bodies[node.body];
            changed |= merge.bodyChanged[node.body];
        }
        take(component->body, body);
        if (isNew) {
            // What is below a new component belongs to it and isn't told by itself.
            Merge inner{merge.tree, merge.bodies, merge.bodyChanged, {}};
            mergeChildren(inner, *component, node.children);
            merge.changes.added.push_back(component.get());
        } else {
            if (changed)
                merge.changes.changed.push_back(component.get());
            mergeChildren(merge, *component, node.children);
        }
        children.push_back(std::move(component));
    }
    for (auto& [id, component] : old)
        if (component) {
            merge.changes.removed.push_back(component->id);
            forget(*component);
        }
    parent.children = std::move(children);
}

} // namespace Vs
