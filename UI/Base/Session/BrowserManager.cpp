#include "UI/Base/Session/BrowserManager.h"

#include "Server/Base/Require.h"

#include <algorithm>

namespace Vu {

Browser::Browser()
{
    Vs::assertMainThread();
    BrowserManager::get()->m_browsers.push_back(this);
}

Browser::~Browser()
{
    std::erase(BrowserManager::get()->m_browsers, this);
}

BrowserManager* BrowserManager::get()
{
    static auto* const manager = new BrowserManager;
    return manager;
}

Browser* BrowserManager::browserToAssetSession(const AssetSession* session) const
{
    const auto found = std::find_if(m_browsers.begin(), m_browsers.end(), [&](const Browser* browser) {
        return session && browser->assetSession() == session;
    });
    return found == m_browsers.end() ? nullptr : *found;
}

} // namespace Vu
