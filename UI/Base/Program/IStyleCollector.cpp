#include "UI/Base/Program/IStyleCollector.h"

#include "Server/Base/Require.h"

namespace Vu {
namespace {

std::vector<IStyleCollector*>& registered()
{
    static auto* const collectors = new std::vector<IStyleCollector*>;
    return *collectors;
}

} // namespace

IStyleCollector::IStyleCollector()
{
    Vs::assertMainThread();
    registered().push_back(this);
}

IStyleCollector::~IStyleCollector()
{
    std::erase(registered(), this);
}

const std::vector<IStyleCollector*>& IStyleCollector::collectors()
{
    return registered();
}

} // namespace Vu
