#include "UI/Base/Window/ScriptText.h"

#include "Server/Base/ScriptDebugger.h"
#include "Server/Base/Status.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Window/LineRegions.h"

#include <QFile>
#include <QFileInfo>
#include <QPlainTextDocumentLayout>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextCursor>

#include <algorithm>
#include <optional>
#include <utility>

namespace Vu {
namespace {

/// Editors replace a file in several steps.
constexpr int kSettles = 80;

Vs::ScriptDebugInfo& info()
{
    return *Vs::TranscriptMgr::get()->scriptDebugInfo();
}

std::optional<QByteArray> contentOf(const std::wstring& path)
{
    QFile file(QString::fromStdWString(path));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

bool hasWindowsEnds(const QByteArray& file)
{
    const qsizetype end = file.indexOf('\n');
    return end > 0 && file[end - 1] == '\r';
}

QString textOf(const QByteArray& file)
{
    QString text = QString::fromUtf8(file);
    if (hasWindowsEnds(file))
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    // What else looks like the end of a line is none.
    for (QChar& character : text)
        if (character == QLatin1Char('\r') || character == QChar::ParagraphSeparator ||
            character == QChar::LineSeparator || character.isNull())
            character = QLatin1Char(' ');
    return text;
}

QByteArray fileOf(QString text, bool windowsEnds)
{
    if (windowsEnds)
        text.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    return text.toUtf8();
}

int linesOf(const QByteArray& file)
{
    const auto ends = static_cast<int>(file.count('\n'));
    return file.isEmpty() || file.endsWith('\n') ? ends : ends + 1;
}

} // namespace

ScriptText* ScriptText::get()
{
    static auto* const text = new ScriptText;
    return text;
}

ScriptText::ScriptText()
{
    m_document.setDocumentLayout(new QPlainTextDocumentLayout(&m_document));
    connect(&m_document, &QTextDocument::contentsChange, this,
            [this](int position, int, int added) { linesChanged(position, added); });
    connect(&m_document, &QTextDocument::modificationChanged, this, [this] { emit changed(); });
    m_soon.setSingleShot(true);
    m_soon.setInterval(kSettles);
    connect(&m_soon, &QTimer::timeout, this, [this] { look(); });
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, [this] { m_soon.start(); });
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] { m_soon.start(); });
    Vs::PythonAutorunScripts::get()->subscribe(this);
    showFile();
}

ScriptText::~ScriptText() = default;

void ScriptText::onScriptDebugInfoChanged()
{
    // Counting the lines is a change as well.
    if (m_showing)
        return;
    m_showing = true;
    if (info().scriptPath() != m_path)
        showFile();
    else if (info().needToReload())
        look();
    m_showing = false;
    emit changed();
}

void ScriptText::showFile()
{
    if (modified())
        m_unsaved[m_path] = {m_document.toPlainText(), m_file};
    m_path = info().scriptPath();
    m_clashes = m_missing = false;
    m_file.clear();
    m_filling = true;
    m_document.setPlainText({});
    const std::optional<QByteArray> file = m_path.empty() ? QByteArray() : contentOf(m_path);
    m_missing = !file;
    take(file.value_or(QByteArray()));
    if (const auto kept = m_unsaved.find(m_path); kept != m_unsaved.end()) {
        m_clashes = m_file != kept->second.file;
        fill(kept->second.text);
        m_document.setModified(true);
        m_unsaved.erase(kept);
    }
    m_filling = false;
    m_blocks = m_document.blockCount();
    watch();
}

void ScriptText::watch()
{
    if (const QStringList old = m_watcher.files() + m_watcher.directories(); !old.isEmpty())
        m_watcher.removePaths(old);
    if (m_path.empty())
        return;
    // One that is replaced isn't the file that was watched.
    const QFileInfo file(QString::fromStdWString(m_path));
    m_watcher.addPath(file.absolutePath());
    if (file.exists())
        m_watcher.addPath(file.absoluteFilePath());
}

/// Looks whether the file has changed.
void ScriptText::look()
{
    if (m_path.empty())
        return;
    const std::optional<QByteArray> file = contentOf(m_path);
    const bool wasMissing = std::exchange(m_missing, !file);
    if (file && *file != m_file) {
        if (modified()) {
            m_clashes = true;
        } else {
            take(*file);
            tellReaders();
        }
    }
    if (file || wasMissing != m_missing)
        watch();
    emit changed();
}

/// Makes the text that of the file.
void ScriptText::take(const QByteArray& file)
{
    const QString text = textOf(file);
    m_file = file;
    m_editable = !m_missing && !m_path.empty() && fileOf(text, hasWindowsEnds(file)) == file;
    m_clashes = false;
    fill(text);
    m_document.clearUndoRedoStacks();
    m_document.setModified(false);
    info().scriptLines(linesOf(file));
}

/// Only the lines that differ are replaced, so that whatever stands at the others stays there.
void ScriptText::fill(const QString& text)
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    const std::vector<LineRegion> regions =
        differingRegions(m_document.toPlainText().split(QLatin1Char('\n')), lines);
    for (auto region = regions.rbegin(); region != regions.rend(); ++region) {
        // One by one, so that a cursor stays in its line.
        const int pairs = std::min(region->oldCount, region->newCount);
        replace({region->oldLine + pairs, region->oldCount - pairs, region->newLine + pairs,
                 region->newCount - pairs},
                lines);
        for (int i = 0; i < pairs; ++i) {
            QTextCursor cursor(m_document.findBlockByNumber(region->oldLine + i));
            cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
            cursor.insertText(lines[region->newLine + i]);
        }
    }
}

/// Removes whole lines, or inserts some.
void ScriptText::replace(const LineRegion& region, const QStringList& lines)
{
    const int end = region.oldLine + region.oldCount;
    const bool isLast = end == m_document.blockCount(); // The end in front of them comes and goes with them.
    QTextCursor cursor(m_document.findBlockByNumber(isLast ? region.oldLine - 1 : region.oldLine));
    if (isLast)
        cursor.movePosition(QTextCursor::EndOfBlock);
    if (region.oldCount > 0 && isLast)
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    else if (region.oldCount > 0)
        cursor.setPosition(m_document.findBlockByNumber(end).position(), QTextCursor::KeepAnchor);
    QString text;
    for (const QString& line : lines.mid(region.newLine, region.newCount))
        text += isLast ? QLatin1Char('\n') + line : line + QLatin1Char('\n');
    if (region.oldCount > 0 || region.newCount > 0)
        cursor.insertText(text);
}

void ScriptText::linesChanged(int position, int added)
{
    const int more = m_document.blockCount() - std::exchange(m_blocks, m_document.blockCount());
    if (m_filling || more == 0 || info().scriptPath() != m_path)
        return;
    const QTextBlock first = m_document.findBlock(position);
    const int last = std::min(position + added, m_document.characterCount() - 1);
    const int came = m_document.findBlock(last).blockNumber() - first.blockNumber();
    const int line = first.blockNumber() + 1;
    // Of what was replaced by as many lines, the marks stay.
    const int from = position == first.position() ? line + std::min(came, came - more) : line + 1;
    info().linesMoved(from, more);
}

/// Those that show the file's own text, as the debug dialog does.
void ScriptText::tellReaders()
{
    info().needToReload(true);
    info().needToReload(false);
}

void ScriptText::reload()
{
    const std::optional<QByteArray> file = contentOf(m_path);
    if (!file)
        return;
    m_missing = false;
    take(*file);
    tellReaders();
    watch();
    emit changed();
}

bool ScriptText::save(bool overwrite)
{
    if (!modified() && !m_missing)
        return true;
    if (m_path.empty() || (m_clashes && !overwrite))
        return false;
    const QByteArray content = fileOf(m_document.toPlainText(), hasWindowsEnds(m_file));
    QSaveFile file(QString::fromStdWString(m_path));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit()) {
        MessageBox::error(localizedFormat("ScriptNotSaved", "%1% can't be saved: %2%", m_path,
                                          file.errorString().toStdWString()));
        return false;
    }
    m_file = content;
    m_missing = m_clashes = false;
    m_document.setModified(false);
    info().scriptLines(linesOf(content));
    tellReaders();
    watch();
    emit changed();
    return true;
}

bool ScriptText::closingDown(Vs::Status& status)
{
    if (!modified() || !MessageBox::canAsk())
        return true;
    MessageBox box(localizedFormat("ScriptUnsaved", "The script %1% has been edited. Save it?", m_path));
    box.icon(kQuestionIcon);
    box.addButton(localized("ButtonSave", "Save"), true);
    box.addButton(localized("ButtonDontSave", "Don't Save"));
    box.addButton(kCancelButton);
    const int answer = box.show();
    if (answer == 1 || (answer == 0 && save(true)))
        return true;
    status.addWarning(localizedFormat("ScriptStays", "%1% isn't saved.", m_path));
    return false;
}

} // namespace Vu
