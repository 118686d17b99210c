#pragma once

#include "Server/Component/Component.h"
#include "Server/DataModel/Model/PartTree.h"
#include "Server/DataModel/Translator.h"

#include <memory>
#include <string>
#include <vector>

namespace Vs::Exchange {

/// The part of a component tree that the save options select. The tree must outlive it.
class WantedParts
{
public:
    /// Why nothing can be written without it.
    static constexpr const wchar_t* kNothing = L"nothing of the model is visible and selected as asked for";

    WantedParts(const Component& root, TranslatorSaveOptions& options);

    /// Whether nothing is left out.
    [[nodiscard]] bool isWhole() const { return !m_copy && m_root; }
    /// The tree without what is left out; null if nothing is left.
    const Component* root() const { return m_root; }
    /// The wanted components with everything in them, but without what contains them; only visible ones, if
    /// only these are wanted.
    const std::vector<std::string>& tops() const { return m_tops; }
    /// Those of a copy of the wanted components that were copied only because they are in one of these.
    [[nodiscard]] std::vector<std::string> unwanted(const PartTree& copies) const;

private:
    std::unique_ptr<Component> wanted(const Component& component, bool isIn);
    bool isListed(const Component& component) const;

    bool m_visibleOnly;
    const std::vector<std::string>& m_listed;
    std::unique_ptr<Component> m_copy;
    const Component* m_root;
    std::vector<std::string> m_tops;
};

} // namespace Vs::Exchange
