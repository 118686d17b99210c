#include "UI/Commands/Itemhub/ItemhubRoles.h"

#include "Server/DataModel/Document.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Commands/Itemhub/ItemhubThreads.h"
#include "UI/Commands/Localized.h"

#include <vector>

namespace Vu::Commands {
namespace {

using Vs::ItemhubUtilities;

/// Its lifetime is the add-in's; answers may come later.
ItemhubRoles* s_installed = nullptr;

constexpr const char* kReader = "reader";

std::wstring textOf(const std::string& role)
{
    if (role == kReader)
        return localized("ItemhubRoleReader", "Reader: saving makes no version");
    if (role == "writer")
        return localized("ItemhubRoleWriter", "Writer");
    return localized("ItemhubRoleAdmin", "Administrator");
}

} // namespace

ItemhubRoles::ItemhubRoles()
    : m_facts([this](const Vs::Document& document) {
          std::vector<DocumentFacts::Fact> facts;
          if (const std::string& role = roleOf(document); !role.empty())
              facts.push_back({localized("ItemhubFactRole", "Your role"), textOf(role)});
          return facts;
      })
{
    s_installed = this;
    m_subscriptions.add(Vs::ItemhubEventSource::get(), this);
}

ItemhubRoles::~ItemhubRoles()
{
    s_installed = nullptr;
}

bool ItemhubRoles::mayOnlyRead(const Vs::Document& document)
{
    return s_installed && s_installed->roleOf(document) == kReader;
}

const std::string& ItemhubRoles::roleOf(const Vs::Document& document)
{
    static const std::string unknown;
    const ItemhubUtilities* service = ItemhubUtilities::get();
    const auto item = document.path().empty() ? std::nullopt : service->itemOf(document.path());
    if (!item || !service->isOfAccount(*item))
        return unknown;
    ask(item->workspaceId);
    return m_known[item->workspaceId].role;
}

/// What was learnt stays until there is something newer.
void ItemhubRoles::ask(std::int64_t workspace)
{
    Known& known = m_known[workspace];
    if (known.isCurrent)
        return;
    known.isCurrent = true;
    ItemhubThreads::run([workspace]() -> std::function<void()> {
        try {
            const auto role = ItemhubUtilities::get()->getWorkspaceById(static_cast<int>(workspace)).role();
            return [workspace, role] {
                if (s_installed)
                    s_installed->answered(workspace, role);
            };
        } catch (const std::exception&) {
            return {}; // The next change of the session asks again.
        }
    });
}

void ItemhubRoles::answered(std::int64_t workspace, std::string role)
{
    std::string& known = m_known[workspace].role;
    if (known == role)
        return;
    known = std::move(role);
    Vs::Event event;
    DocumentRemarkSource::get()->fireDocumentRemarksChanged(&event);
}

void ItemhubRoles::forget()
{
    m_known.clear();
    Vs::Event event;
    DocumentRemarkSource::get()->fireDocumentRemarksChanged(&event);
}

void ItemhubRoles::itemChanged(Vs::ItemhubItemEvent* event)
{
    if (event->kind() != "member.changed")
        return;
    for (auto& [workspace, known] : m_known)
        known.isCurrent = false;
    Vs::Event changed;
    DocumentRemarkSource::get()->fireDocumentRemarksChanged(&changed);
}

} // namespace Vu::Commands
