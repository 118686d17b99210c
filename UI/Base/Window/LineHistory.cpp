#include "UI/Base/Window/LineHistory.h"

#include <algorithm>

namespace Vu {
namespace {

constexpr qsizetype kLongest = 200;

} // namespace

LineHistory::LineHistory(Vs::Option<std::vector<std::wstring>>& option) : m_option(option)
{
    for (const std::wstring& line : m_option())
        m_lines << QString::fromStdWString(line);
    begin();
}

void LineHistory::remember(const QString& line)
{
    m_lines.removeAll(line);
    m_lines << line;
    while (m_lines.size() > kLongest)
        m_lines.removeFirst();
    begin();
    std::vector<std::wstring> lines;
    for (const QString& old : m_lines)
        lines.push_back(old.toStdWString());
    m_option(lines);
}

bool LineHistory::recall(int step, QString& text)
{
    if (m_place == m_lines.size())
        m_unfinished = text;
    const qsizetype place = std::clamp<qsizetype>(m_place + step, 0, m_lines.size());
    if (place == m_place)
        return false;
    m_place = place;
    text = place == m_lines.size() ? m_unfinished : m_lines[place];
    return true;
}

} // namespace Vu
