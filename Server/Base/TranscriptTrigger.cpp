#include "Server/Base/TranscriptTrigger.h"

#include "Server/Base/Require.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/TranscriptPython.h"
#include "Server/Base/TranscriptSecrets.h"

#include <algorithm>
#include <utility>

namespace Vs {

namespace {

class LineTrigger : public TranscriptTrigger
{
public:
    explicit LineTrigger(const std::wstring& line) : m_line(line) {}
    std::wstring onCreateTranscriptEntry() override { return m_line; }

private:
    const std::wstring& m_line;
};

/// A line stays one, whatever names and texts it holds.
std::wstring inOneLine(std::wstring text)
{
    std::replace(text.begin(), text.end(), L'\n', L' ');
    std::replace(text.begin(), text.end(), L'\r', L' ');
    return text;
}

} // namespace

void TranscriptTrigger::onCreatePythonTranscriptEntry(std::wstring& entry)
{
    const std::wstring line = onCreateTranscriptEntry();
    entry = line.empty() ? line : TranscriptPython::statement(inOneLine(line));
}

void TranscriptTrigger::writeTranscriptEntry()
{
    assertMainThread();
    TranscriptMgr* transcripts = TranscriptMgr::get();
    if (!transcripts->takesEntries())
        return;
    std::wstring entry;
    if (transcripts->recordingType() == kPythonTranscript) {
        onCreatePythonTranscriptEntry(entry);
        entry = TranscriptSecrets::hiddenInPython(std::move(entry));
    } else {
        entry = TranscriptSecrets::hidden(escapeParameters(inOneLine(onCreateTranscriptEntry())));
    }
    if (!entry.empty())
        transcripts->write(entry);
}

void writeTranscriptLine(const std::wstring& line)
{
    LineTrigger(line).writeTranscriptEntry();
}

} // namespace Vs
