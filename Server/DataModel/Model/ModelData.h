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
    /// The names of the children of one of its components; good until the model changes.
    ChildNames& names(const Component& parent) { return m_tree.names(parent); }
    size_t componentCount() const { return m_tree.count(); }
    /// How many components stand where one of them does: more than one in an assembly that occurs so often.
    size_t occurrencesOf(const Component& component) const { return m_tree.occurrencesOf(component); }
    ModelSource& source() const { return *m_source; }

    /// Takes the tree of a file that was read. Only for a model that is still empty.
    void load(std::shared_ptr<const ModelFile> file);

    /// Brings the component tree up to date with the kernel's data. Gives what changed.
    ComponentsEvent::Changes refresh() { return m_tree.refresh(); }
    const std::vector<ReshapedBody>& reshaped() const { return m_tree.reshaped(); }

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

    /// Small values that belong to the model. Changed through the history alone, but for a file's own.
    ChangeHistory::Settings& settings() { return m_settings; }
    ChangeHistory& history() { return m_history; }
    /// Set when an inner transaction was aborted: the outer one can't be committed any more.
    bool transactionBroken = false;

private:
    std::shared_ptr<ModelSource> m_source;
    ComponentTree m_tree;
    std::optional<StoredPart> m_stored;
    ChangeHistory::Settings m_settings;
    ChangeHistory m_history;
};

} // namespace Vs
