#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Require.h"
#include "Server/Base/ScriptDebugInfo.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TranscriptParameters.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vs {

class Status;
class TranscriptTrigger;
struct ReplayOptions;
struct ReplayResult;

enum class ScriptGo;

enum ETranscriptType { kTextTranscript = 0, kPythonTranscript = 1 };

/// What the surrounding program does for transcripts.
class TranscriptHost
{
public:
    virtual ~TranscriptHost() = default;
    /// A recording has begun.
    virtual void recordingStarted() {}
    /// A script or a transcript begins, possibly inside another one.
    virtual void runBegins() {}
    /// The one that began last has ended: undoes what it began but did not end, and says what that was; empty
    /// if nothing.
    virtual std::wstring runEnds() { return {}; }
    /// Between two lines: finishes what the first left in the queues before the second runs.
    virtual void settle() = 0;
    /// Tells the user what went wrong; the message names the file, and the line if there is one.
    virtual void failed(const std::wstring& message) = 0;
};

/// Writes and plays transcripts: files of text lines or of Python that do again what was done in a session.
///
/// A recording takes what the triggers hand it (TranscriptTrigger), each line on its way to the disk before
/// the next command runs. A replay reads a file line by line and runs each as if it were typed. Where a
/// relative path in it leads, `locate` tells. Main thread only.
class TranscriptMgr : public Implements<TranscriptMgr>
{
public:
    static TranscriptMgr* get();

    /// By the file's name alone: Python where the suffix is `.py`, in capitals as well; else text.
    [[nodiscard]] static ETranscriptType typeOf(const std::wstring& path);

    /// Begins a transcript, replacing an existing file and ending a running recording. Returns false, with
    /// the reason, if the file cannot be made, is being replayed, or contains something other than a
    /// transcript: its first line that isn't a comment must be a line of text of this program; a Python file
    /// must be one that was recorded.
    bool startRecording(const std::wstring& path, ETranscriptType type, Status& status);
    /// The same; the reason goes to the host.
    bool startRecording(const std::wstring& path, ETranscriptType type);
    void endRecording();
    bool recording() const { return m_file != nullptr; }
    /// Whether the medium of a recording has failed since the program started, so that its end is missing.
    bool recordingLost() const { return m_recordingLost; }
    /// Called whenever a recording ends, by whatever means, while it still accepts its last lines; if its
    /// medium has failed, after nothing is recorded any more. One listener; empty for none.
    void whenRecordingEnds(std::function<void()> listener)
    {
        require(!listener || !m_recordingEnds, "one listener is told of the end of recordings");
        m_recordingEnds = std::move(listener);
    }
    /// The file that is being written; empty if none.
    std::wstring recordingFile() const;
    ETranscriptType recordingType() const;

    /// Plays a transcript to its end, or to the first line that fails: the status then says so as `FILE:LINE:
    /// message`, and so does the host. The text transcript loaded in the debugger is played from the current
    /// line to the next break point; from the start if it was at the end.
    void replay(const std::wstring& path, Status& status, ETranscriptType type);
    ReplayResult replay(const std::wstring& path, ETranscriptType type, const ReplayOptions& options);
    /// Runs the one current line; of a Python transcript all.
    void stepReplay(const std::wstring& path, Status& status, ETranscriptType type);
    bool replaying() const { return !m_replays.empty(); }
    /// The innermost transcript being played; empty if none.
    std::wstring replayingScriptFile() const;
    /// What a path in a line stands for: while a transcript is played a relative one is looked up beside it,
    /// unless only the working folder has such a file, or the folder for it.
    [[nodiscard]] std::wstring locate(const std::wstring& path) const;

    /// How a recording writes a path that `locate` shall find again: within the transcript's own folder
    /// relative to it, so that both can be moved together; else as it is.
    [[nodiscard]] std::wstring portable(const std::wstring& path) const;

    ScriptDebugInfo* scriptDebugInfo() { return &m_debugInfo; }

    /// Not owned; null for none.
    void host(TranscriptHost* host) { m_host = host; }
    TranscriptHost* host() const { return m_host; }

    /// Runs a line for somebody who waits for all of it, as replays, scripts and the console do: the host has
    /// settled when this returns, and what went wrong after the line's answer (`lineFails`) is its failure.
    TextCommandResult settled(const std::function<TextCommandResult()>& line);
    /// Whether such a line runs.
    bool settles() const { return m_settled > 0; }
    /// The running line fails, though it may have answered already, because something that it left in the
    /// queues went wrong, say. The first message counts. Without such a line nothing happens.
    void lineFails(const std::wstring& message);

    /// What `${NAME}` stands for in text transcripts, and what scripts may ask for. A replay adds to them
    /// while it lasts (ReplayOptions).
    const TranscriptParameters& parameters() const { return m_parameters; }
    void parameters(TranscriptParameters parameters) { m_parameters = std::move(parameters); }

    /// Held while a script or a transcript runs.
    class [[nodiscard]] Run
    {
    public:
        Run();
        /// Reports what was left open, unless `end` was called.
        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;
        /// TranscriptHost::runEnds.
        std::wstring end();

    private:
        bool m_ended = false;
    };
    /// Whether any runs.
    bool runs() const { return m_runs > 0; }

    /// Held for as long as a transcript is played; one may replay another, but not itself.
    class [[nodiscard]] Replay
    {
    public:
        /// Lines of no file.
        Replay();
        /// Throws Vs::Exception if the file is being played already.
        Replay(const std::wstring& path, ETranscriptType type);
        ~Replay() { get()->m_replays.pop_back(); }
        Replay(const Replay&) = delete;
        Replay& operator=(const Replay&) = delete;
    };

    /// While this exists, nothing is recorded: what runs is part of something that is recorded as a whole.
    class [[nodiscard]] Unrecorded
    {
    public:
        Unrecorded() { ++get()->m_unrecorded; }
        ~Unrecorded() { --get()->m_unrecorded; }
        Unrecorded(const Unrecorded&) = delete;
        Unrecorded& operator=(const Unrecorded&) = delete;
    };
    bool takesEntries() const { return recording() && m_unrecorded == 0; }

    /// Whether a recording takes each step of a drag of the camera, not only where it ends. Default false.
    bool recordSmoothCameraChange() const { return m_recordSmooth; }
    void recordSmoothCameraChange(bool value) { m_recordSmooth = value; }

private:
    friend class TranscriptTrigger;

    TranscriptMgr() = default;
    /// A medium that fails ends the recording, and the host is told.
    void write(const std::wstring& entry);
    [[nodiscard]] bool debugsPython(const std::wstring& path, ETranscriptType type, ScriptGo how) const;
    void tell(const std::wstring& message) const;
    void tellListener() const;

    struct File;
    struct Close
    {
        void operator()(File* file) const;
    };
    struct Playing
    {
        std::wstring path; ///< As it was given.
        std::wstring file; ///< The file that it leads to; empty for lines of no file.
        ETranscriptType type;
    };
    std::unique_ptr<File, Close> m_file;
    std::vector<Playing> m_replays;
    ScriptDebugInfo m_debugInfo;
    TranscriptHost* m_host = nullptr;
    std::function<void()> m_recordingEnds;
    TranscriptParameters m_parameters;
    std::wstring m_lateFailure; ///< Of the innermost line that settles.
    int m_settled = 0;
    int m_runs = 0;
    bool m_recordingLost = false;
    int m_unrecorded = 0;
    bool m_recordSmooth = false;
};

} // namespace Vs
