#include "UI/Base/Session/DocumentRemark.h"

#include "Server/Base/Require.h"

#include <vector>

namespace Vu {
namespace {

std::vector<const DocumentRemark*>& registered()
{
    static auto* const all = new std::vector<const DocumentRemark*>;
    return *all;
}

} // namespace

DocumentRemark::DocumentRemark(Text text) : m_text(std::move(text))
{
    Vs::assertMainThread();
    Vs::require(static_cast<bool>(m_text), "a remark has a text");
    registered().push_back(this);
}

DocumentRemark::~DocumentRemark()
{
    std::erase(registered(), this);
}

std::wstring DocumentRemark::of(const Vs::Document& document)
{
    std::wstring all;
    for (const DocumentRemark* remark : registered())
        if (const std::wstring text = remark->m_text(document); !text.empty())
            all += all.empty() ? text : L", " + text;
    return all;
}

} // namespace Vu
