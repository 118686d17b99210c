#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Vs::Exchange {

/// A message from a worker to the program, over one pipe and in one direction: frames of a length (4 bytes,
/// of what follows), a kind (1 byte), a fraction (8 bytes) and a text in UTF-8.
struct WorkerMessage
{
    enum class Kind : char {
        Progress = 'P', ///< The fraction of the work done, and the current step.
        Warning = 'W',  ///< The result is usable, but the user should know.
        Error = 'E',    ///< There is no result; the text names the cause.
        Other = 'O',    ///< The result depends on another file, too; the text is its path, or empty.
        Note = 'N',     ///< Not about the result: for the system log.
        Done = 'D',     ///< The result is complete.
    };

    Kind kind = Kind::Progress;
    double fraction = 0;
    std::string text;
};

/// The descriptor on which a worker finds its pipe.
constexpr int kWorkerPipe = 3;

std::string encode(const WorkerMessage& message);

/// Assembles messages from the pieces that a pipe delivers.
class WorkerMessageReader
{
public:
    void add(std::string_view bytes);
    /// The next complete message. An invalid frame makes the reader broken: it then returns nothing.
    std::optional<WorkerMessage> next();
    bool broken() const { return m_broken; }

private:
    std::string m_bytes;
    size_t m_taken = 0; ///< Of these bytes: they are moved once for many messages.
    bool m_broken = false;
};

} // namespace Vs::Exchange
