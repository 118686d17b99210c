#pragma once

#include "Server/DataModel/Selection/SelectionSet.h"
#include "Server/Scene/Node.h"

#include <vector>

namespace Vs {
class Asset;
class SelectionMgr;
} // namespace Vs

namespace Vu {

/// Lights up in the scene what is selected, and what is about to be. Made by AssetSession.
class SelectionDisplay : private Vs::SelectionSetSite
{
public:
    /// Neither is owned; both outlive the display.
    SelectionDisplay(Vs::Asset* asset, Vs::SelectionMgr* selection);
    ~SelectionDisplay() override;
    SelectionDisplay(const SelectionDisplay&) = delete;
    SelectionDisplay& operator=(const SelectionDisplay&) = delete;

private:
    void selectionSetChanged() override { show(); }
    void show();
    void light(const Vs::SelectionSet& set, Rendra::Graphics::Highlight highlight);

    Vs::Asset* m_asset;
    Vs::SelectionMgr* m_selection;
    std::vector<Vs::StrongRef<Rendra::Graphics::Node>> m_lit;
};

} // namespace Vu
