#include "Server/Base/TranscriptMgr.h"

#include "Server/Base/Exception.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Require.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptPython.h"
#include "Server/Base/TranscriptReplay.h"
#include "Server/Base/Warning.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <locale>
#include <set>
#include <tuple>

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

    void put(const std::wstring& entry)
    {
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
    std::unique_ptr<File, Close> file(new File{path, PathInfo::absolute(path).parent_path(), type, {}, {}});
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
    tellListener();
    m_file.reset();
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

void TranscriptMgr::replay(const std::wstring& path, Status& status, ETranscriptType type)
{
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
    if (!m_file || path.empty() || !fs::path(path).is_absolute())
        return path;
    const fs::path inside = fs::path(path).lexically_relative(m_file->folder);
    return inside.empty() || inside == "." || *inside.begin() == ".." ? path : inside.wstring();
}

void TranscriptMgr::settleAfterCall()
{
    if (m_host && replaying() && m_replays.back().type == kPythonTranscript)
        m_host->settle();
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
