#pragma once

#include "Server/DataModel/Exchange/WorkerProtocol.h"

#include <Message_ProgressIndicator.hxx>

#include <chrono>
#include <mutex>
#include <string>

namespace Vs::Translate {

/// Reports progress to the program that started this worker. Any thread.
class Reporter
{
public:
    /// What follows takes the work from fraction `from` to `to`.
    void stage(const std::string& step, double from, double to);
    /// How much of the stage is done, from 0 to 1.
    void progress(double fraction);
    /// A fraction of what is left of the stage is done, too. False if that is too little to be told.
    bool advance(double fraction);
    void warning(const std::string& text) { send({Exchange::WorkerMessage::Kind::Warning, 0, text}); }
    void error(const std::string& text) { send({Exchange::WorkerMessage::Kind::Error, 0, text}); }
    /// What is read also depends on another file; an empty path for one whose name isn't known.
    void dependsOn(const std::string& path) { send({Exchange::WorkerMessage::Kind::Other, 0, path}); }
    /// For the log of the machine.
    void note(const std::string& text) { send({Exchange::WorkerMessage::Kind::Note, 0, text}); }
    void done() { send({Exchange::WorkerMessage::Kind::Done, 1, {}}); }

private:
    void send(const Exchange::WorkerMessage& message);

    std::mutex m_mutex;
    std::string m_step;
    double m_from = 0, m_to = 1;
    double m_told = -1;
};

/// Forwards the kernel's own progress as that of the current stage.
class KernelProgress : public Message_ProgressIndicator
{
public:
    explicit KernelProgress(Reporter& reporter) : m_reporter(reporter) {}
    void Show(const Message_ProgressScope&, const Standard_Boolean) override
    {
        m_reporter.progress(GetPosition());
    }

private:
    Reporter& m_reporter;
};

} // namespace Vs::Translate
