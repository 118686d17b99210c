#pragma once

#include "Tests/UI/Commands/Navigation.h"

namespace Vu {
class Workspace;
}

namespace CommandsTests {

/// Sessions that are recorded in an empty program, and replayed in one.
class Recorded : public Navigation
{
protected:
    // Python knows the commands, and must be shut down before them.
    static void TearDownTestSuite();
    void SetUp() override;
    void TearDown() override;

    /// A file in the folder of the transcripts.
    static std::wstring file(const std::wstring& name) { return scratch(L"transcripts/" + name); }
    /// Without the one that describes the file.
    static std::vector<std::string> linesOf(const std::wstring& name);
    static void record(const std::wstring& name);
    static void stop() { answer(L"Transcripting.Stop"); }
    /// Nothing of what is open is kept.
    static void closeAll();

    /// The contents and names of all open documents; shell, environment, selection and camera.
    static std::wstring state();
    /// The result of the file in an empty program, preceded by the failures of its lines.
    static std::wstring stateAfter(const std::wstring& name);
};

/// A workspace with a window, which is small since rendering takes most of the time. Documents must be closed
/// before it is destroyed.
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
