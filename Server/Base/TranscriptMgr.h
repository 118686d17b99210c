#pragma once

#include "Server/Base/Object.h"

namespace Vs {

/// Whether a transcript is being replayed or recorded. Main thread only.
class TranscriptMgr : public Implements<TranscriptMgr>
{
public:
    static TranscriptMgr* get();

    /// Held for as long as lines of a transcript run; a transcript may replay another.
    class Replay
    {
    public:
        Replay() { ++get()->m_replays; }
        ~Replay() { --get()->m_replays; }
        Replay(const Replay&) = delete;
        Replay& operator=(const Replay&) = delete;
    };
    bool replaying() const { return m_replays > 0; }

    /// Whether a recording takes each step of a drag of the camera, not only where it ends. Default false.
    bool recordSmoothCameraChange() const { return m_recordSmooth; }
    void recordSmoothCameraChange(bool value) { m_recordSmooth = value; }

private:
    TranscriptMgr() = default;

    int m_replays = 0;
    bool m_recordSmooth = false;
};

} // namespace Vs
