#include "UI/Commands/Transcripts/TranscriptLines.h"

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/TranscriptTrigger.h"
#include "Server/Base/Warning.h"
#include "UI/Base/Validation/References.h"

#include <boost/algorithm/string/trim.hpp>

#include <algorithm>

namespace Vu::Commands {
namespace {

/// Writes its line when going out of scope.
class TranscriptInsertScriptTrigger : public Vs::TranscriptTrigger
{
public:
    explicit TranscriptInsertScriptTrigger(std::wstring line) : m_line(std::move(line)) {}
    ~TranscriptInsertScriptTrigger() override { writeTranscriptEntry(); }

    std::wstring onCreateTranscriptEntry() override { return m_line; }

private:
    std::wstring m_line;
};

} // namespace

void insertTranscriptLine(const std::wstring& line)
{
    const TranscriptInsertScriptTrigger trigger(line);
}

void keepReference(const std::wstring& checkLine)
{
    if (!Vs::TranscriptMgr::get()->recording())
        return;
    const Vs::TranscriptMgr::Unrecorded unrecorded;
    const References::Mode before = References::mode();
    References::mode(References::Mode::Update);
    const Vs::TextCommandResult kept = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(checkLine);
    References::mode(before);
    if (kept.first != 0)
        Vs::warn(kept.second);
}

std::wstring normalizedDescription(std::wstring text)
{
    boost::algorithm::trim(text);
    std::replace(text.begin(), text.end(), L' ', L'_');
    const bool isOneWord = text.find_first_of(L"\"\t") == std::wstring::npos && !text.starts_with(L'/');
    return isOneWord ? text : Vs::Strings::quote(text);
}

} // namespace Vu::Commands
