#pragma once

#include "UI/Base/Window/LineHistory.h"

#include <QString>
#include <QStringList>

namespace Vu {

/// Python typed line by line, as in a console, with `quillet` and `design` predefined. A statement may span
/// several lines. Its output goes to the display of PythonManager.
class PythonLine
{
public:
    PythonLine();

    /// Starts the interpreter if it isn't running yet.
    static void start();

    /// Runs the line. Returns false if it asks to leave, as sys.exit does.
    bool run(const QString& line);
    /// Whether the statement continues on the next line.
    bool goesOn() const { return m_goesOn; }
    /// Abandons an unfinished statement.
    void abandon();
    /// ">>> ", or "... " while a statement continues.
    QString prompt() const { return QLatin1String(m_goesOn ? "... " : ">>> "); }
    /// The indentation of the statement's next line.
    const QString& indentation() const { return m_indentation; }

    /// Where the word before that position begins, which `completions` replace.
    static qsizetype wordStart(const QString& line, qsizetype place);
    static QStringList completions(const QString& line, qsizetype place);

    LineHistory& history() { return m_history; }

private:
    Vs::OptionGroup m_store{"PythonLine"};
    Vs::Option<std::vector<std::wstring>> m_lines{m_store, "history", {}};
    LineHistory m_history{m_lines};
    QString m_indentation;
    bool m_goesOn = false;
};

} // namespace Vu
