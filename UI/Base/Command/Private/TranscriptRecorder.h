#pragma once

#include "Server/Base/TextCommandMgr.h"
#include "UI/Base/Command/CommandObserver.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Vu {

/// Records in the running transcript what is done: each committed command that the user, a line or a script
/// called, as the wrapper's line if that expresses all its arguments, else as a line of Commands.Start. For a
/// command that stays active there follow a line for each input and one that commits it. A text command that
/// has a body of its own is written as it was called, unless it hands all its work on to a command
/// (ForwardedRun).
///
/// What a command does inside itself is not written: it does it again when it is run again.
class TranscriptRecorder : public ICommandObserver, public Vs::TextCommandObserver
{
public:
    /// Called before and after everything that is recorded, since what was done by other means (selection,
    /// camera) has to be written before, and what the command itself brought about must not be written
    /// behind it.
    struct Around
    {
        std::function<void()> before;
        /// Before the lines of a command that stayed active, and behind those of one that ran meanwhile:
        /// where the camera is.
        std::function<void()> camera;
        std::function<void()> entry; ///< Right before the lines of a command: what it has asked.
        /// With the line that was written for it, if one was.
        std::function<void(const std::wstring& line)> after;
    };
    explicit TranscriptRecorder(Around around = {}) : m_around(std::move(around)) {}

    void before(const CommandRun& run) override;
    void after(const CommandRun& run) override;
    void before(const Vs::TextCommand& command) override;
    void after(const Vs::TextCommand& command, const Vs::TextCommandParameters& parameters,
               const Vs::TextCommandResult& result) override;

    /// The texts of object arguments, by their names.
    using Texts = std::map<const Vs::UniqueString*, std::wstring>;
    /// The line that runs the command again; with these texts in place of what the objects are called now.
    static std::wstring lineOf(const CommandRun& run, const Texts& objects = {});
    /// The lines that then give the command the values of its inputs, and commit it; none for a command that
    /// has ended when the first line has.
    static std::vector<std::wstring> inputLinesOf(const CommandBase& command);

private:
    /// Whether what runs is part of something written as a whole.
    bool isPart(const CommandRun& run) const;
    bool isRecorded(const CommandRun& run) const;
    /// Whether the command did nothing but queue another one.
    bool isHandedOn(const CommandRun& run) const;
    void write(const std::wstring& line);

    Around m_around;
    Texts m_objects;                           ///< As they were called before the command.
    bool m_ownLine = false;                    ///< A text command runs that is written as it was called.
    bool m_forwarded = false;                  ///< A command of it was written.
    unsigned long m_deferredBefore = 0;        ///< Before that text command.
    unsigned long m_deferredBeforeCommand = 0; ///< Before the command that isn't part of another one.
};

} // namespace Vu
