#pragma once

#include "Server/Base/TranscriptMgr.h"
#include "Tests/UI/Commands/CommandsProgram.h"

#include <QString>

#include <string>

class QPlainTextEdit;
class QPushButton;
class QWidget;

namespace CommandsTests {

/// Scripts in a folder of their own, and the debugger's dialog.
class Debugging : public WithProgram
{
protected:
    void SetUp() override;
    void TearDown() override;

    static Vs::ScriptDebugInfo& debug() { return *Vs::TranscriptMgr::get()->scriptDebugInfo(); }
    static std::wstring file(const std::wstring& name) { return scratch(L"debugging/" + name); }
    /// Writes it, and returns its path.
    static std::wstring script(const std::wstring& name, const std::string& content);
    /// With an empty path, the file dialog is cancelled.
    static void fileDialogAnswers(const std::wstring& path);

    /// The visible window of that title; null if there is none.
    static QWidget* window(const QString& title);
    static QWidget* dialog() { return window(QStringLiteral("Debug Dialog")); }
    static QPushButton* button(const char* name);
    static void click(const char* name);
    /// The script's text; shows its window.
    static QPlainTextEdit* scriptText();
};

} // namespace CommandsTests
