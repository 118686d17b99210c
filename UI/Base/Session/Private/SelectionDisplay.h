#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/ComponentsListener.h"
#include "Server/DataModel/Selection/SelectionSet.h"
#include "Server/Scene/Node.h"
#include "UI/Base/Session/Private/PartFollower.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Vs {
class Asset;
class SelectionMgr;
} // namespace Vs

namespace Vs::Scene {
class SceneAssetAdapter;
}

namespace Vu {

/// Highlights in the scene what is selected or about to be, keeps parts selected when their bodies change,
/// and deselects what is gone from the model. Made by AssetSession.
class SelectionDisplay : private Vs::ComponentsListener
{
public:
    /// Neither is owned; both outlive the display.
    SelectionDisplay(Vs::Asset* asset, Vs::SelectionMgr* selection);
    ~SelectionDisplay() override;
    SelectionDisplay(const SelectionDisplay&) = delete;
    SelectionDisplay& operator=(const SelectionDisplay&) = delete;

private:
    using Highlight = Rendra::Graphics::Highlight;

    using Changes = Vs::ComponentsEvent::Changes;

    /// How one set is shown. A change of few components costs the same however large the set is.
    class Layer : public Vs::SelectionSetSite
    {
    public:
        Layer(SelectionDisplay& display, Vs::SelectionSet& set);
        ~Layer() override;
        void selectionSetChanged() override;
        /// Highlights the whole set again.
        void light();
        /// Highlights what may have new nodes after the changes.
        void light(const Changes& changes);
        /// Removes from the set what the changes have removed from the model.
        void dropStale(const Changes& changes);

        struct Lit
        {
            Vs::StrongRef<Rendra::Graphics::Node> kept; ///< Keeps the node alive until it's dark again.
            Vs::StrongRef<Vs::Selection> of;            ///< One of those that light it.
            bool whole = false;
            std::vector<std::pair<Rendra::Graphics::Part, uint32_t>> parts;
        };
        using Nodes = std::unordered_map<Rendra::Graphics::Node*, Lit>;
        const Nodes& nodes() const { return m_nodes; }

    private:
        /// What is selected of one component, and which of its nodes are lit.
        struct OfComponent
        {
            std::vector<Vs::StrongRef<Vs::Selection>> selections;
            std::vector<Rendra::Graphics::Node*> nodes;
        };
        bool isMuch(const Changes& changes) const;
        bool isStale(const Vs::Selection& selection) const;
        bool holdsBelow(const std::vector<std::string>& ids) const;
        bool concernsHeld(const Changes& changes);
        Rendra::Graphics::Node* add(const Vs::StrongRef<Vs::Selection>& selection);
        void lightComponent(const std::string& id);
        void lightComponent(OfComponent& held);
        void lightAdded();
        void darkenRemoved();
        void makeIndex();

        SelectionDisplay& m_display;
        Vs::SelectionSet& m_set;
        size_t m_generation = 0; ///< Of the set, when all of it was lit;
        size_t m_seen = 0;       ///< and how many of its selections have been looked at.
        Nodes m_nodes;
        std::unordered_map<std::string, OfComponent> m_index; ///< By Component::id; made when it is asked.
    };

    void assetComponentsChanged(Vs::ComponentsEvent* event) override;
    Vs::Scene::SceneAssetAdapter* scene() const;
    void dropPointed(const Changes& changes);
    void show(Rendra::Graphics::Node* node) const;

    Vs::Asset* m_asset;
    Vs::SelectionMgr* m_selection;
    PartFollower m_follower;
    Layer m_selected, m_collected, m_pointed;
};

} // namespace Vu
