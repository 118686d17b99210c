#include "Server/Base/TranscriptMgr.h"

#include "Server/Base/Exception.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Private/RecordedIdentifiers.h"
#include "Server/Base/Require.h"
#include "Server/Base/ScriptDebugger.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptKind.h"
#include "Server/Base/TranscriptPython.h"
#include "Server/Base/TranscriptReplay.h"
#include "Server/Base/Warning.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <iterator>
#include <locale>
#include <set>
#include <tuple>
#include <utility>

namespace Vs {

namespace {

namespace fs = boost::filesystem;

/// One name for a file, however it is reached.
std::wstring identityOf(const std::wstring& path)
{
    boost::system::error_code error;
    const fs::path real = fs::canonical(path, error);
    return (error ? PathInfo::absolute(path).lexically_normal() : real).wstring();
}

/// Takes what nobody needs out of a recording that is complete. Where that can't be done, all stays.
void tidy(const fs::path& path)
{
    boost::system::error_code error;
    if (fs::symlink_status(path, error).type() != fs::regular_file)
        return;
    fs::ifstream stream(path, std::ios::binary);
    const std::string before(std::istreambuf_iterator<char>(stream), {});
    const std::string after = withoutUnnamedIdentifiers(before);
    if (!stream || after == before)
        return;
    const fs::path beside = path.parent_path() / fs::unique_path(".%%%%%%%%.recording");
    fs::ofstream tidied(beside, std::ios::binary);
    tidied << after;
    tidied.close();
    if (tidied)
        fs::rename(beside, path, error);
    if (!tidied || error)
        fs::remove(beside, error);
}

bool isThere(const fs::path& path)
{
    boost::system::error_code error;
    return fs::exists(path, error);
}

} // namespace

struct TranscriptMgr::File
{
    std::wstring path;
    fs::path folder;
    ETranscriptType type;
    fs::ofstream stream;
    std::set<std::wstring> imported;
    bool begun = false;

    void put(const std::wstring& entry)
    {
        if (type == kTextTranscript && !std::exchange(begun, true))
            stream << kTextTranscriptHead << kTextTranscriptLayout << '\n';
        if (type == kPythonTranscript)
            if (const std::wstring module = TranscriptPython::moduleOf(entry);
                !module.empty() && imported.insert(module).second)
                stream << "import " << Strings::narrow(module) << '\n';
        stream << Strings::toBytes(entry) << '\n' << std::flush;
    }
};

void TranscriptMgr::Close::operator()(File* file) const
{
    delete file;
}

TranscriptMgr* TranscriptMgr::get()
{
    static auto* const manager = new TranscriptMgr;
    return manager;
}

ETranscriptType TranscriptMgr::typeOf(const std::wstring& path)
{
    std::wstring suffix = fs::path(path).extension().wstring();
    const std::locale locale;
    const auto& characters = std::use_facet<std::ctype<wchar_t>>(locale);
    for (wchar_t& character : suffix)
        character = characters.toupper(character);
    return suffix == L".PY" ? kPythonTranscript : kTextTranscript;
}

bool TranscriptMgr::startRecording(const std::wstring& path, ETranscriptType type, Status& status)
{
    assertMainThread();
    endRecording();
    const auto refuse = [&](const std::wstring& why) {
        status.addError(L"The transcript \"" + path + L"\" cannot be written: " + why + L".");
        return false;
    };
    const std::wstring identity = identityOf(path);
    for (const Playing& playing : m_replays)
        if (playing.file == identity)
            return refuse(L"it is being replayed");
    if (holdsNoTranscript(path, type))
        return refuse(L"the file holds something else than a transcript, and would be lost. Choose another "
                      L"name, or remove the "
                      L"file before");
    std::unique_ptr<File, Close> file(
        new File{path, PathInfo::absolute(path).parent_path(), type, {}, {}, false});
    errno = 0;
    file->stream.open(fs::path(path), std::ios::binary | std::ios::trunc);
    if (file->stream && type == kPythonTranscript)
        file->stream << kPythonTranscriptHead << "\nimport quillet\n" << std::flush;
    if (!file->stream)
        return refuse(Strings::widen(std::strerror(errno)));
    m_file = std::move(file);
    if (m_host)
        m_host->recordingStarted();
    return true;
}

bool TranscriptMgr::startRecording(const std::wstring& path, ETranscriptType type)
{
    Status status;
    const bool started = startRecording(path, type, status);
    if (!started)
        tell(status.toString());
    return started;
}

void TranscriptMgr::endRecording()
{
    assertMainThread();
    if (!m_file)
        return;
    try {
        tellListener();
    } catch (const std::exception& fault) {
        tell(Strings::widen(fault.what()));
    }
    const fs::path path = m_file->path;
    m_file.reset();
    tidy(path);
}

void TranscriptMgr::tellListener() const
{
    if (m_recordingEnds)
        m_recordingEnds();
}

std::wstring TranscriptMgr::recordingFile() const
{
    return m_file ? m_file->path : std::wstring();
}

ETranscriptType TranscriptMgr::recordingType() const
{
    return m_file ? m_file->type : kTextTranscript;
}

void TranscriptMgr::write(const std::wstring& entry)
{
    require(m_file != nullptr, "an entry is written only while a transcript is recorded");
    errno = 0;
    m_file->put(entry);
    if (m_file->stream)
        return;
    const std::wstring cause = Strings::widen(std::strerror(errno));
    const std::wstring path = recordingFile();
    m_recordingLost = true;
    m_file.reset();
    tellListener();
    tell(L"The transcript \"" + path + L"\" ends here, since it cannot be written: " + cause + L".");
}

void TranscriptMgr::tell(const std::wstring& message) const
{
    if (m_host)
        m_host->failed(message);
    else
        warn(message);
}

/// The debugger's buttons play what is loaded as text, which may be Python that a panel has loaded.
bool TranscriptMgr::debugsPython(const std::wstring& path, ETranscriptType type, ScriptGo how) const
{
    if (type != kTextTranscript || path != m_debugInfo.scriptPath() || typeOf(path) != kPythonTranscript)
        return false;
    ScriptDebugger::get()->go(how);
    return true;
}

void TranscriptMgr::replay(const std::wstring& path, Status& status, ETranscriptType type)
{
    if (debugsPython(path, type, ScriptGo::Continue))
        return;
    ReplayOptions options;
    options.status = &status;
    std::ignore = replay(path, type, options); // What failed is in the status.
}

ReplayResult TranscriptMgr::replay(const std::wstring& path, ETranscriptType type,
                                   const ReplayOptions& options)
{
    assertMainThread();
    return playTranscript(path, type, options);
}

void TranscriptMgr::stepReplay(const std::wstring& path, Status& status, ETranscriptType type)
{
    if (debugsPython(path, type, ScriptGo::Over))
        return;
    ReplayOptions options;
    options.status = &status;
    options.oneLine = true;
    std::ignore = replay(path, type, options); // What failed is in the status.
}

std::wstring TranscriptMgr::replayingScriptFile() const
{
    return m_replays.empty() ? std::wstring() : m_replays.back().path;
}

std::wstring TranscriptMgr::locate(const std::wstring& path) const
{
    if (path.empty() || m_replays.empty() || m_replays.back().file.empty())
        return path;
    const fs::path relative(path);
    if (relative.is_absolute())
        return path;
    const fs::path beside = fs::path(m_replays.back().file).parent_path() / relative;
    if (isThere(beside))
        return beside.wstring();
    const bool folderIsHereOnly =
        relative.has_parent_path() && isThere(relative.parent_path()) && !isThere(beside.parent_path());
    return isThere(relative) || folderIsHereOnly ? path : beside.wstring();
}

std::wstring TranscriptMgr::portable(const std::wstring& path) const
{
    if (!m_file || path.empty())
        return path;
    fs::path whole(path);
    if (!whole.is_absolute()) {
        // Where the replay starts, the same words may lead elsewhere; but what leads nowhere is not a path.
        const fs::path here = PathInfo::absolute(locate(path)).lexically_normal();
        if (!isThere(here) && !(whole.has_parent_path() && isThere(here.parent_path())))
            return path;
        whole = here;
    }
    const fs::path inside = whole.lexically_relative(m_file->folder);
    return inside.empty() || inside == "." || *inside.begin() == ".." ? whole.wstring() : inside.wstring();
}

TextCommandResult TranscriptMgr::settled(const std::function<TextCommandResult()>& line)
{
    // A line that runs others reports a failure itself.
    std::wstring outer;
    outer.swap(m_lateFailure);
    ++m_settled;
    TextCommandResult result = line();
    if (m_host)
        m_host->settle();
    --m_settled;
    m_lateFailure.swap(outer);
    const std::wstring& late = outer;
    // Where the line itself has failed, this is why.
    if (!late.empty())
        result = {1, result.first == 0 ? late : late + L' ' + result.second};
    return result;
}

void TranscriptMgr::lineFails(const std::wstring& message)
{
    if (m_settled > 0 && m_lateFailure.empty())
        m_lateFailure = message;
}

TranscriptMgr::Run::Run()
{
    TranscriptMgr* transcripts = get();
    ++transcripts->m_runs;
    if (transcripts->m_host)
        transcripts->m_host->runBegins();
}

TranscriptMgr::Run::~Run()
{
    if (const std::wstring left = end(); !left.empty())
        get()->tell(left);
}

std::wstring TranscriptMgr::Run::end()
{
    if (std::exchange(m_ended, true))
        return {};
    TranscriptMgr* transcripts = get();
    --transcripts->m_runs;
    return transcripts->m_host ? transcripts->m_host->runEnds() : std::wstring();
}

TranscriptMgr::Replay::Replay()
{
    get()->m_replays.push_back({{}, {}, kTextTranscript});
}

TranscriptMgr::Replay::Replay(const std::wstring& path, ETranscriptType type)
{
    const std::wstring identity = identityOf(path);
    for (const Playing& playing : get()->m_replays)
        if (playing.file == identity)
            throw Exception(L"The transcript " + path +
                            L" is being replayed already; it cannot replay itself.");
    get()->m_replays.push_back({path, identity, type});
}

} // namespace Vs
