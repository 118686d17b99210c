#include "Server/Itemhub/ItemStore.h"

namespace Vs::Itemhub {
namespace {

[[noreturn]] void noDashboard()
{
    throw Web::ItemhubException(Web::ItemhubException::Kind::NotFound,
                                "The lifecycle service has no page for browsers");
}

} // namespace

ItemStore::~ItemStore() = default;

std::string ItemStore::dashboard(const Watch&)
{
    noDashboard();
}

DashboardRequest ItemStore::takeRequest(std::int64_t, const Watch&)
{
    noDashboard();
}

DashboardRequest ItemStore::redeemTicket(const std::string&, const Watch&)
{
    noDashboard();
}

void ItemStore::answerRequest(std::int64_t, DashboardAnswer, const std::string&, const Watch&)
{
    noDashboard();
}

} // namespace Vs::Itemhub
