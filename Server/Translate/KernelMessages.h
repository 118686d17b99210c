#pragma once

#include <Message_Printer.hxx>

#include <mutex>
#include <string>
#include <vector>

namespace Vs::Translate {

/// Takes in what the kernel says while this object lives. Its readers of mesh formats tell there, and nowhere
/// else, what is wrong with a file.
class KernelMessages
{
public:
    KernelMessages();
    ~KernelMessages();
    KernelMessages(const KernelMessages&) = delete;
    KernelMessages& operator=(const KernelMessages&) = delete;

    /// What made the kernel leave something out, as clauses without a full stop.
    const std::vector<std::string>& faults() const;
    /// What it only found worth saying.
    const std::vector<std::string>& remarks() const;

private:
    class Printer;
    opencascade::handle<Printer> m_printer;
};

/// The first of several clauses, and how many more there are.
std::string firstOf(const std::vector<std::string>& clauses);

} // namespace Vs::Translate
