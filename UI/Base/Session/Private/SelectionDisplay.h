#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/ComponentsListener.h"
#include "Server/DataModel/Selection/SelectionSet.h"
#include "Server/Scene/Node.h"
#include "UI/Base/Session/Private/PartFollower.h"

#include <unordered_map>
#include <vector>

namespace Vs {
class Asset;
class SelectionMgr;
} // namespace Vs

namespace Vs::Scene {
class SceneAssetAdapter;
}

namespace Vu {

/// Lights up in the scene what is selected, and what is about to be, has parts stay selected whose bodies
/// change, and what is gone from the model no longer be selected. Made by AssetSession.
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

    /// How one set is shown.
    class Layer : public Vs::SelectionSetSite
    {
    public:
        Layer(SelectionDisplay& display, Vs::SelectionSet& set);
        ~Layer() override;
        void selectionSetChanged() override;
        void light();

        struct Lit
        {
            bool whole = false;
            std::vector<std::pair<Rendra::Graphics::Part, uint32_t>> parts;
        };
        using Nodes = std::unordered_map<Rendra::Graphics::Node*, Lit>;
        const Nodes& nodes() const { return m_nodes; }

    private:
        SelectionDisplay& m_display;
        Vs::SelectionSet& m_set;
        Nodes m_nodes;
        std::vector<Vs::StrongRef<Rendra::Graphics::Node>> m_kept; ///< Keeps them alive.
    };

    void assetComponentsChanged(Vs::ComponentsEvent* event) override;
    Vs::Scene::SceneAssetAdapter* scene() const;
    void dropStale(Vs::SelectionSet& set);
    void dropPointed(const Vs::ComponentsEvent::Changes& changes);
    void show(Rendra::Graphics::Node* node) const;

    Vs::Asset* m_asset;
    Vs::SelectionMgr* m_selection;
    PartFollower m_follower;
    Layer m_selected, m_collected, m_pointed;
};

} // namespace Vu
