#pragma once

#include "Server/Base/ScriptDebugger.h"

#include <QWidget>

#include <vector>

class QLabel;
class QToolButton;

namespace Vu {

enum class Glyph;
class ScriptEdit;

/// The script that the debugger has loaded: its lines, which can be edited, where it stands, and buttons that
/// run it, for text and Python, into whatever it runs in turn. It works while a script runs or waits.
class ScriptPanel : public QWidget
{
public:
    explicit ScriptPanel(QWidget* parent);

protected:
    bool event(QEvent* event) override;

private:
    struct Button
    {
        QToolButton* button;
        QKeyCombination keys;
        void (ScriptPanel::*slot)();
    };

    QToolButton* add(Glyph glyph, const char* key, const char* english, QKeyCombination keys,
                     void (ScriptPanel::*slot)());
    QToolButton* addFile(const wchar_t* command, const char* key, const char* english, QKeyCombination keys,
                         void (ScriptPanel::*slot)());
    void open();
    void save();
    void run() { go(Vs::ScriptGo::Continue); }
    void over() { go(Vs::ScriptGo::Over); }
    void into() { go(Vs::ScriptGo::Into); }
    void out() { go(Vs::ScriptGo::Out); }
    void toCursor();
    void restart();
    void stop();
    void breakPoint();
    void go(Vs::ScriptGo how, int line = 0);
    void showState();

    std::vector<Button> m_buttons;
    std::vector<QToolButton*> m_runs; ///< Those that make it go on.
    QWidget* m_tools;
    QToolButton* m_save = nullptr;
    QToolButton* m_stop = nullptr;
    QLabel* m_file;
    QLabel* m_state;
    QWidget* m_clash; ///< Asks which text counts.
    ScriptEdit* m_edit;
};

} // namespace Vu
