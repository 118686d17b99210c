#include "Server/Itemhub/Private/Session.h"

#include "Server/Base/Strings.h"
#include "Server/Base/Task.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Server/Itemhub/Private/SignIn.h"
#include "Server/Itemhub/Private/Texts.h"

#include <utility>

namespace Vs::Itemhub {

Session& Session::get()
{
    static auto* const session = new Session;
    return *session;
}

void Session::begin(std::shared_ptr<ItemStore> store, Facts facts, bool isOnline)
{
    const std::lock_guard lock(m_mutex);
    m_store = std::move(store);
    m_facts = std::move(facts);
    m_isOnline = isOnline;
}

std::shared_ptr<ItemStore> Session::end()
{
    const std::lock_guard lock(m_mutex);
    m_facts = {};
    m_isOnline = false;
    return std::exchange(m_store, nullptr);
}

std::shared_ptr<ItemStore> Session::store() const
{
    const std::lock_guard lock(m_mutex);
    return m_store;
}

std::shared_ptr<ItemStore> Session::needed() const
{
    if (std::shared_ptr<ItemStore> found = store())
        return found;
    throw Web::ItemhubException(
        Web::ItemhubException::Kind::NotSignedIn,
        Strings::narrow(localized("ItemhubNobody", "You are not signed in to the lifecycle service.")));
}

Session::Facts Session::facts() const
{
    const std::lock_guard lock(m_mutex);
    return m_facts;
}

void Session::kept(bool isKept)
{
    const std::lock_guard lock(m_mutex);
    m_facts.isKept = isKept;
}

bool Session::isOnline() const
{
    const std::lock_guard lock(m_mutex);
    return m_isOnline;
}

void Session::answered(const ItemStore* store, bool wasAnswered)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_store || m_store.get() != store || m_isOnline == wasAnswered)
            return;
        m_isOnline = wasAnswered;
    }
    ItemhubUtilities::results().post([wasAnswered] {
        if (!wasAnswered)
            SignIn::reviveOwnService();
        ItemhubEvent event;
        ItemhubEventSource::get()->fireSessionChanged(&event);
    });
}

} // namespace Vs::Itemhub
