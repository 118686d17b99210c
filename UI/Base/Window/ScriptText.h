#pragma once

#include "Server/Base/PythonManager.h"
#include "Server/Base/ScriptDebugInfo.h"

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QObject>
#include <QTextDocument>
#include <QTimer>

#include <map>
#include <string>

namespace Vu {

struct LineRegion;

/// The text of the script at the front of ScriptDebugInfo, as all script panels show and edit it. A change of
/// the file by others is taken over line by line, so that breakpoints, the mark of the present line and each
/// panel's place stay with their lines; if the text has been edited too, `clashes` says so. Text that isn't
/// saved is kept while another file is at the front. Before the program ends the user is asked about it.
class ScriptText : public QObject, private Vs::IScriptDebugInfoObserver, private Vs::PythonAutorunEventSite
{
    Q_OBJECT

public:
    static ScriptText* get();

    QTextDocument* document() { return &m_document; }
    const std::wstring& path() const { return m_path; }
    /// Whether it could be written as it is: the file is there and is text in UTF-8.
    bool editable() const { return m_editable; }
    bool modified() const { return m_document.isModified(); }
    /// Whether the file has changed under an edited text.
    bool clashes() const { return m_clashes; }
    /// The file can't be read; the text is as it was.
    bool missing() const { return m_missing; }

    /// Writes the edited text, in place of what others have written as well if `overwrite` says so. Returns
    /// whether the file is as shown; the user was told why not.
    [[nodiscard]] bool save(bool overwrite = false);
    /// Takes the file's text in place of the edited one.
    void reload();

signals:
    /// Another file, its state, or where execution stands.
    void changed();

private:
    struct Kept
    {
        QString text;
        QByteArray file;
    };

    ScriptText();
    ~ScriptText() override;
    void onScriptDebugInfoChanged() override;
    bool closingDown(Vs::Status& status) override;

    void showFile();
    void look();
    void take(const QByteArray& file);
    void fill(const QString& text);
    void replace(const LineRegion& region, const QStringList& lines);
    void linesChanged(int position, int added);
    void watch();
    void tellReaders();

    QTextDocument m_document;
    std::wstring m_path;
    QByteArray m_file; ///< As it was when the text was that of the file.
    std::map<std::wstring, Kept> m_unsaved;
    QFileSystemWatcher m_watcher;
    QTimer m_soon;
    int m_blocks = 1;
    bool m_editable = false;
    bool m_clashes = false;
    bool m_missing = false;
    bool m_filling = false;
    bool m_showing = false;
};

} // namespace Vu
