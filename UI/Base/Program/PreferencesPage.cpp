#include "UI/Base/Program/PreferencesPage.h"

#include "Server/Base/Require.h"

namespace Vu {
namespace {

std::vector<PreferencesPage*>& registered()
{
    static auto* const all = new std::vector<PreferencesPage*>;
    return *all;
}

} // namespace

PreferencesPage::PreferencesPage(Title title, Make make) : m_title(std::move(title)), m_make(std::move(make))
{
    Vs::assertMainThread();
    Vs::require(m_title && m_make, "a page has a title and a way to be made");
    registered().push_back(this);
}

PreferencesPage::~PreferencesPage()
{
    std::erase(registered(), this);
}

const std::vector<PreferencesPage*>& PreferencesPage::all()
{
    return registered();
}

} // namespace Vu
