#pragma once

#include "Tests/UI/Commands/Navigation.h"

namespace Vu {
class Workspace;
}

namespace CommandsTests {

/// Sessions that are recorded in an empty program, and played again in one.
class Recorded : public Navigation
{
protected:
    // Python knows the commands, and must go before they do.
    static void TearDownTestSuite();
    void SetUp() override;
    void TearDown() override;

    /// A file in the folder of the transcripts.
    static std::wstring file(const std::wstring& name) { return scratch(L"transcripts/" + name); }
    /// Without the one that tells what the file is.
    static std::vector<std::string> linesOf(const std::wstring& name);
    static void record(const std::wstring& name);
    static void stop() { answer(L"Transcripting.Stop"); }
    /// Nothing is kept of what is open.
    static void closeAll();

    /// What every open document holds and how it is called; shell, environment, selection and camera.
    static std::wstring state();
    /// What the file brings about in an empty program, with the failures of its lines before it.
    static std::wstring stateAfter(const std::wstring& name);
};

/// A workspace with a window, which is small since pictures take most of the time. Documents must be closed
/// before it goes.
class SmallWindow
{
public:
    explicit SmallWindow(int width = 400, int height = 300);
    ~SmallWindow();
    SmallWindow(const SmallWindow&) = delete;
    SmallWindow& operator=(const SmallWindow&) = delete;

private:
    Vu::Workspace* m_before;
    Vu::Workspace* m_workspace;
};

} // namespace CommandsTests
