#include "UI/Base/Session/FilePlace.h"

#include "Server/Base/Require.h"

#include <vector>

namespace Vu {
namespace {

std::vector<const FilePlace*>& registered()
{
    static auto* const all = new std::vector<const FilePlace*>;
    return *all;
}

} // namespace

FilePlace::FilePlace(Source source) : m_source(std::move(source))
{
    Vs::assertMainThread();
    Vs::require(static_cast<bool>(m_source), "somebody knows the place");
    registered().push_back(this);
}

FilePlace::~FilePlace()
{
    std::erase(registered(), this);
}

std::optional<FilePlace::Answer> FilePlace::of(const std::wstring& path)
{
    if (path.empty())
        return std::nullopt;
    for (const FilePlace* place : registered())
        if (std::optional<Answer> answer = place->m_source(path))
            return answer;
    return std::nullopt;
}

std::wstring FilePlace::shown(const std::wstring& path)
{
    const std::optional<Answer> answer = of(path);
    return answer ? answer->place : path;
}

} // namespace Vu
