#include "UI/Base/Session/DocumentFacts.h"

#include "Server/Base/Require.h"

namespace Vu {
namespace {

std::vector<const DocumentFacts*>& registered()
{
    static auto* const all = new std::vector<const DocumentFacts*>;
    return *all;
}

} // namespace

DocumentFacts::DocumentFacts(Source source) : m_source(std::move(source))
{
    Vs::assertMainThread();
    Vs::require(static_cast<bool>(m_source), "a source of facts can be asked");
    registered().push_back(this);
}

DocumentFacts::~DocumentFacts()
{
    std::erase(registered(), this);
}

std::vector<DocumentFacts::Fact> DocumentFacts::of(const Vs::Document& document)
{
    std::vector<Fact> all;
    for (const DocumentFacts* facts : registered())
        for (Fact& fact : facts->m_source(document))
            all.push_back(std::move(fact));
    return all;
}

} // namespace Vu
