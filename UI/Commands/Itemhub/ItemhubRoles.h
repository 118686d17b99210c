#pragma once

#include "Server/Itemhub/ItemhubEvents.h"
#include "UI/Base/Session/DocumentFacts.h"

#include <cstdint>
#include <map>
#include <string>

namespace Vs {
class Document;
}

namespace Vu::Commands {

/// The account's permissions for the items of a workspace, so that read-only users know before a save is
/// refused. The service is asked on a thread when first needed, and again when roles have changed. Main
/// thread only.
class ItemhubRoles : private Vs::ItemhubEventSite
{
public:
    ItemhubRoles();
    ~ItemhubRoles() override;
    ItemhubRoles(const ItemhubRoles&) = delete;
    ItemhubRoles& operator=(const ItemhubRoles&) = delete;

    /// Whether the document belongs to an item for which its account may not create versions. False until the
    /// service has answered.
    [[nodiscard]] static bool mayOnlyRead(const Vs::Document& document);

private:
    /// Empty if not known yet.
    [[nodiscard]] const std::string& roleOf(const Vs::Document& document);
    void ask(std::int64_t workspace);
    void answered(std::int64_t workspace, std::string role);
    void forget();
    void sessionChanged(Vs::ItemhubEvent*) override { forget(); }
    void itemChanged(Vs::ItemhubItemEvent* event) override;

    struct Known
    {
        std::string role;
        bool isCurrent = false; ///< Or being queried.
    };
    std::map<std::int64_t, Known> m_known; ///< By workspaces.
    DocumentFacts m_facts;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
