#include "Tests/UI/Commands/Transcribed.h"

#include "Server/Base/TranscriptReplay.h"
#include "Tests/Support/Files.h"
#include "UI/Base/Validation/References.h"

namespace CommandsTests {

void Transcribed::SetUp()
{
    WithProgram::SetUp();
    emptyScratch(L"transcripts");
    Vs::TextCommandMgr::get()->output(this);
}

void Transcribed::TearDown()
{
    Vs::TextCommandMgr::get()->output(nullptr);
    Vu::References::mode(Vu::References::Mode::Fill);
    WithProgram::TearDown();
}

const std::wstring& Transcribed::replay(const std::string& lines, const std::string& name)
{
    TestSupport::overwrite(file(name), lines);
    Vs::ReplayOptions options;
    options.keepGoing = true;
    m_answers.clear();
    const std::wstring path = file(name).wstring();
    m_failures = Vs::TranscriptMgr::get()->replay(path, Vs::TranscriptMgr::typeOf(path), options).failures;
    return m_answers;
}

boost::filesystem::path Transcribed::file(const std::string& name)
{
    return boost::filesystem::path(scratch(L"transcripts")) / name;
}

} // namespace CommandsTests
