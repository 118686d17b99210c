#include "UI/Base/Session/Sample.h"

namespace Vu {
namespace {

std::vector<const Sample*>& samples()
{
    static auto* const all = new std::vector<const Sample*>;
    return *all;
}

} // namespace

Sample::Sample(Describe describe, std::wstring line)
    : m_describe(std::move(describe)), m_line(std::move(line))
{
    samples().push_back(this);
}

Sample::~Sample()
{
    std::erase(samples(), this);
}

const std::vector<const Sample*>& Sample::all()
{
    return samples();
}

} // namespace Vu
