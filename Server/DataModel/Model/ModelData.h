#pragma once

#include "Server/Component/Component.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/DataModel/Model/ModelKernel.h"
#include "Server/DataModel/Model/StoredPart.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace Vs {

class ModelBody;

/// Where the bodies of one asset come from. Outlives the asset as long as anybody holds a body of it.
class ModelSource
{
public:
    /// The file that the asset was read from; null for one that was made here.
    std::shared_ptr<const ModelFile> file;

    /// Runs `work(ModelKernel&)` with the kernel's model, which is read at the first call. Any thread, one at
    /// a time.
    template <class Work>
    auto withKernel(Work&& work)
    {
        const std::lock_guard lock(m_mutex);
        return work(kernel());
    }
    bool kernelLoaded() const { return m_kernel != nullptr; }

private:
    ModelKernel& kernel();

    std::mutex m_mutex;
    std::unique_ptr<ModelKernel> m_kernel;
};

/// The model behind an asset: the component tree that everybody sees, and the data that it is made from.
class ModelData
{
public:
    explicit ModelData(const std::wstring& name);
    ~ModelData();

    Component& root() { return *m_root; }
    const Component* find(const std::string& id) const;
    ModelSource& source() { return *m_source; }

    /// Takes the tree of a file that was read. Only for a model that is still empty.
    void load(std::shared_ptr<const ModelFile> file);

    /// Brings the component tree up to date with the kernel's data: components and bodies that are still
    /// there stay the same objects. Gives what changed.
    ComponentsEvent::Changes refresh();

    /// Whether there is nothing in it, and never was.
    bool isEmpty() const { return !m_source->file && !m_source->kernelLoaded(); }
    /// Where the model lies in a file, as it is now; null if it was changed since.
    const StoredPart* stored() const { return m_stored ? &*m_stored : nullptr; }
    void stored(StoredPart part);
    /// Called with every change: what is stored isn't the model any more.
    void markChanged() { m_stored.reset(); }

    /// Told how far writing is; may throw, to give up.
    using Watch = std::function<void(double fraction)>;
    /// Writes the model as it is now, and gives its hash (ModelFile::hash). Throws std::runtime_error.
    uint64_t write(ModelSink& sink, const Watch& watch);

    bool transactionOpen = false;
    /// Set when an inner transaction was aborted: the outer one can't be committed any more.
    bool transactionBroken = false;
    std::wstring transactionName;

private:
    struct Merge;
    StrongRef<ModelBody> bodyOf(const PartTree& tree, size_t index);
    void mergeChildren(Merge& merge, Component& parent, const std::vector<PartTree::Node>& nodes);
    void forget(const Component& component);

    std::shared_ptr<ModelSource> m_source;
    std::unique_ptr<Component> m_root;
    std::unordered_map<std::string, Component*> m_components;
    std::map<std::string, StrongRef<ModelBody>> m_bodies;
    std::optional<StoredPart> m_stored;
};

} // namespace Vs
