#include "UI/Base/Window/PythonLine.h"

#include "Server/Base/PythonManager.h"
#include "Server/Base/TranscriptMgr.h"

namespace Vu {
namespace {

constexpr QLatin1StringView kIndentation("    ");

} // namespace

PythonLine::PythonLine() = default;

void PythonLine::start()
{
    Vs::Status status;
    Vs::PythonManager::get()->consoleLine({}, status);
}

bool PythonLine::run(const QString& line)
{
    Vs::Status status;
    const bool isBlank = line.trimmed().isEmpty();
    {
        // What it has begun and not ended ends with it.
        const Vs::TranscriptMgr::Run run;
        // A line of blanks ends a statement, since the field itself fills in leading blanks.
        m_goesOn =
            Vs::PythonManager::get()->consoleLine(isBlank ? std::wstring() : line.toStdWString(), status);
    }
    if (!isBlank)
        m_history.remember(line);
    m_indentation.clear();
    if (m_goesOn) {
        for (qsizetype i = 0; i < line.size() && line[i].isSpace(); ++i)
            m_indentation += line[i];
        if (line.trimmed().endsWith(QLatin1Char(':')))
            m_indentation += kIndentation;
    }
    return status.isOk();
}

void PythonLine::abandon()
{
    Vs::PythonManager::get()->abandonConsoleLines();
    m_indentation.clear();
    m_goesOn = false;
}

qsizetype PythonLine::wordStart(const QString& line, qsizetype place)
{
    // The terminal's editor uses the same word boundaries.
    static const QString ends = QStringLiteral(" \t\"\\'`@$><=;|&{(");
    while (place > 0 && !ends.contains(line[place - 1]))
        --place;
    return place;
}

QStringList PythonLine::completions(const QString& line, qsizetype place)
{
    QStringList all;
    for (const std::wstring& each : Vs::PythonManager::get()->completions(line.left(place).toStdWString()))
        all << QString::fromStdWString(each);
    return all;
}

} // namespace Vu
