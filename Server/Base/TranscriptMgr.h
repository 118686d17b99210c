#pragma once

#include "Server/Base/Object.h"

#include <memory>
#include <string>

namespace Vs {

class Status;

/// Knows whether a transcript is being written or played, and holds the file of the one that is written. What
/// a line of it says is the business of whoever runs the commands. Main thread only.
class TranscriptMgr : public Implements<TranscriptMgr>
{
public:
    static TranscriptMgr* get();

    /// Begins a text transcript, in place of a file that is there and of a recording that runs. Returns
    /// false, with the reason, if the file cannot be made.
    bool startRecording(const std::wstring& path, Status& status);
    void endRecording();
    bool recording() const { return m_file != nullptr; }

    /// Adds a line, which is on the disk before the next command runs. Nothing happens without a recording; a
    /// medium that fails ends the recording with a warning.
    void write(const std::wstring& line);

    bool replaying() const { return m_replays > 0; }

    /// Held for as long as lines of a transcript run; a transcript may replay another.
    class Replay
    {
    public:
        Replay() { ++get()->m_replays; }
        ~Replay() { --get()->m_replays; }
        Replay(const Replay&) = delete;
        Replay& operator=(const Replay&) = delete;
    };

    /// Whether a recording takes each step of a drag of the camera, not only where it ends. Default false.
    bool recordSmoothCameraChange() const { return m_recordSmooth; }
    void recordSmoothCameraChange(bool value) { m_recordSmooth = value; }

private:
    TranscriptMgr() = default;

    struct File;
    struct Close
    {
        void operator()(File* file) const;
    };
    std::unique_ptr<File, Close> m_file;
    int m_replays = 0;
    bool m_recordSmooth = false;
};

} // namespace Vs
