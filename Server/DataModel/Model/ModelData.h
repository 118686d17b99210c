#pragma once

#include "Server/DataModel/Model/ChangeHistory.h"
#include "Server/DataModel/Model/ComponentTree.h"
#include "Server/DataModel/Model/ModelSource.h"
#include "Server/DataModel/Model/StoredPart.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Vs {

/// The model behind an asset: the component tree that everybody sees, and the data that it is made from.
class ModelData
{
public:
    explicit ModelData(const std::wstring& name);
    ~ModelData();

    Component& root() { return m_tree.root(); }
    const Component* find(const std::string& id) const { return m_tree.find(id); }
    /// The names of the children of one of its components; valid until the model changes.
    ChildNames& names(const Component& parent) { return m_tree.names(parent); }
    size_t componentCount() const { return m_tree.count(); }
    /// How many components are at this one's place: several if its assembly occurs several times.
    size_t occurrencesOf(const Component& component) const { return m_tree.occurrencesOf(component); }
    ModelSource& source() const { return *m_source; }

    /// Takes over the tree of a file that was read. Only for a model that is still empty.
    void load(std::shared_ptr<const ModelFile> file);

    /// Brings the component tree up to date with the kernel's data. Returns what changed.
    ComponentsEvent::Changes refresh() { return m_tree.refresh(); }
    const std::vector<ReshapedBody>& reshaped() const { return m_tree.reshaped(); }

    /// Whether it is empty, and always was.
    bool isEmpty() const { return !m_source->file && !m_source->kernelLoaded(); }
    /// Where the model, as it is now, is stored in a file; null if it was changed since.
    const StoredPart* stored() const { return m_stored ? &*m_stored : nullptr; }
    void stored(StoredPart part);
    /// Called at every change: what is stored is no longer the model.
    void markChanged() { m_stored.reset(); }

    /// Called with the progress of writing; may throw to give up.
    using Watch = std::function<void(double fraction)>;
    /// Writes the model as it is now, and returns its hash (ModelFile::hash). Throws std::runtime_error.
    uint64_t write(ModelSink& sink, const Watch& watch);

    /// Small values that belong to the model. Changed only through the history, except for those read from a
    /// file.
    ChangeHistory::Settings& settings() { return m_settings; }
    ChangeHistory& history() { return m_history; }
    /// Set when an inner transaction was aborted: the outer one can no longer be committed.
    bool transactionBroken = false;

private:
    std::shared_ptr<ModelSource> m_source;
    ComponentTree m_tree;
    std::optional<StoredPart> m_stored;
    ChangeHistory::Settings m_settings;
    ChangeHistory m_history;
};

} // namespace Vs
