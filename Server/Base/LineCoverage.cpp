#include "Server/Base/LineCoverage.h"

namespace Vs {

namespace {

bool s_counts = false;
std::map<std::wstring, uint64_t> s_runs;

} // namespace

void LineCoverage::begin()
{
    s_counts = true;
}

const std::map<std::wstring, uint64_t>& LineCoverage::counts()
{
    return s_runs;
}

void LineCoverage::count(const std::wstring& area, const std::wstring& name)
{
    if (s_counts)
        ++s_runs[area + L'.' + name];
}

} // namespace Vs
