#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Vs::Exchange {

/// What a worker tells the program, over one pipe and in one direction: frames of a length (4 bytes, of what
/// follows), a kind (1 byte), a fraction (8 bytes) and a text in UTF-8.
struct WorkerMessage
{
    enum class Kind : char {
        Progress = 'P', ///< The fraction of the work that is done, and the step that is going on.
        Warning = 'W',  ///< The result is usable, but the user should know.
        Error = 'E',    ///< There is no result; the text names the cause.
        Other = 'O',    ///< The result depends on another file, too; the text is its path, or empty.
        Note = 'N',     ///< Nothing that concerns the result: for the log of the machine.
        Done = 'D',     ///< The result is complete.
    };

    Kind kind = Kind::Progress;
    double fraction = 0;
    std::string text;
};

/// The descriptor on which a worker finds its pipe.
constexpr int kWorkerPipe = 3;

std::string encode(const WorkerMessage& message);

/// Puts messages together from the pieces that a pipe gives.
class WorkerMessageReader
{
public:
    void add(std::string_view bytes);
    /// The next complete message. A frame that can't be one makes the reader broken: nothing comes any more.
    std::optional<WorkerMessage> next();
    bool broken() const { return m_broken; }

private:
    std::string m_bytes;
    size_t m_taken = 0; ///< Of these bytes: they are moved once for many messages.
    bool m_broken = false;
};

} // namespace Vs::Exchange
