#pragma once

#include <Message_Printer.hxx>

#include <mutex>
#include <string>
#include <vector>

namespace Vs::Translate {

/// Collects the kernel's messages while this object lives. Its readers of mesh formats report what is wrong
/// with a file there, and nowhere else.
class KernelMessages
{
public:
    KernelMessages();
    ~KernelMessages();
    KernelMessages(const KernelMessages&) = delete;
    KernelMessages& operator=(const KernelMessages&) = delete;

    /// What made the kernel omit something, as clauses without a full stop.
    const std::vector<std::string>& faults() const;
    /// Messages about anything else.
    const std::vector<std::string>& remarks() const;

private:
    class Printer;
    opencascade::handle<Printer> m_printer;
};

/// The first of several clauses, and how many more there are.
std::string firstOf(const std::vector<std::string>& clauses);

} // namespace Vs::Translate
