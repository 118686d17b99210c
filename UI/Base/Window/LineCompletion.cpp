#include "UI/Base/Window/LineCompletion.h"

#include "Server/Base/TextCompletion.h"
#include "UI/Base/Window/CompletionPopup.h"
#include "UI/Base/Window/PythonLine.h"

#include <QLineEdit>
#include <QStringList>

#include <algorithm>

namespace Vu {
namespace {

/// An area is followed by a command's name, a folder by its contents.
bool goesOn(const QString& candidate)
{
    return candidate.endsWith(QLatin1Char('.')) || candidate.endsWith(QLatin1Char('/'));
}

} // namespace

QString LineCompletion::word() const
{
    const QString line = m_edit->text();
    const int cursor = m_edit->cursorPosition();
    if (m_takesPython)
        return line.left(cursor).mid(PythonLine::wordStart(line, cursor));
    const size_t start = Vs::TextCompletion::wordStart(line.toStdWString(), static_cast<size_t>(cursor));
    return line.mid(static_cast<qsizetype>(start), cursor - static_cast<qsizetype>(start));
}

void LineCompletion::replaceWord(const QString& text)
{
    const int end = m_edit->cursorPosition();
    m_edit->setSelection(end - static_cast<int>(word().size()), static_cast<int>(word().size()));
    m_edit->insert(text);
}

void LineCompletion::offer()
{
    const QString line = m_edit->text();
    QStringList candidates;
    if (m_takesPython)
        candidates = PythonLine::completions(line, m_edit->cursorPosition());
    else if (!line.trimmed().isEmpty())
        for (const std::wstring& candidate :
             Vs::TextCompletion::complete(line.toStdWString(), static_cast<size_t>(m_edit->cursorPosition())))
            candidates << QString::fromStdWString(candidate);
    candidates.removeAll(word());
    m_popup->offer(candidates);
}

bool LineCompletion::accept(int row)
{
    const QListWidgetItem* item = m_popup->item(row);
    if (!item)
        return false;
    const QString text = item->text();
    m_popup->hide();
    const bool more = goesOn(text);
    replaceWord(m_takesPython || more ? text : text + QLatin1Char(' '));
    if (more && !m_takesPython)
        offer();
    return true;
}

bool LineCompletion::complete()
{
    if (!m_popup->isVisible())
        offer();
    if (!m_popup->isVisible())
        return false;
    if (m_popup->currentRow() >= 0 || m_popup->count() == 1)
        return accept(std::max(0, m_popup->currentRow()));
    const QString common = m_popup->commonStart();
    if (common.size() > word().size()) {
        replaceWord(common);
        offer();
    } else {
        m_popup->setCurrentRow(0);
    }
    return false;
}

} // namespace Vu
