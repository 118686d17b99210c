#include "Server/Translate/KernelMessages.h"

#include <Message.hxx>
#include <Message_Messenger.hxx>

#include <algorithm>

namespace Vs::Translate {

namespace {

bool takeOff(std::string& text, std::string_view beginning)
{
    if (!text.starts_with(beginning))
        return false;
    text.erase(0, beginning.size());
    return true;
}

// "Error: invalid OBJ syntax at line 4: vertex index is out of range!" without what our own message says
// already.
std::string clauseOf(std::string text)
{
    if (text.starts_with("File '"))
        text.erase(0, text.find('\n') == std::string::npos ? 0 : text.find('\n') + 1);
    takeOff(text, "Error: ") || takeOff(text, "Warning: ");
    takeOff(text, "glTF reader, ") || takeOff(text, "OBJ reader, ");
    std::replace(text.begin(), text.end(), '\n', ' ');
    while (!text.empty() && (text.back() == '.' || text.back() == '!' || text.back() == ' '))
        text.pop_back();
    return text;
}

} // namespace

class KernelMessages::Printer : public Message_Printer
{
public:
    std::vector<std::string> faults, remarks;

protected:
    // Some readers use several threads.
    void send(const TCollection_AsciiString& text, const Message_Gravity gravity) const override
    {
        if (gravity < Message_Warning)
            return;
        auto* self = const_cast<Printer*>(this);
        const std::lock_guard lock(m_mutex);
        std::vector<std::string>& list = gravity >= Message_Alarm ? self->faults : self->remarks;
        std::string clause = clauseOf({text.ToCString(), size_t(text.Length())});
        if (!clause.empty() && std::find(list.begin(), list.end(), clause) == list.end())
            list.push_back(std::move(clause));
    }

private:
    mutable std::mutex m_mutex;
};

KernelMessages::KernelMessages() : m_printer(new Printer)
{
    Message::DefaultMessenger()->AddPrinter(m_printer);
}

KernelMessages::~KernelMessages()
{
    Message::DefaultMessenger()->RemovePrinter(m_printer);
}

const std::vector<std::string>& KernelMessages::faults() const
{
    return m_printer->faults;
}

const std::vector<std::string>& KernelMessages::remarks() const
{
    return m_printer->remarks;
}

std::string firstOf(const std::vector<std::string>& clauses)
{
    if (clauses.size() < 2)
        return clauses.empty() ? std::string() : clauses.front();
    return clauses.front() + " (and " + std::to_string(clauses.size() - 1) + " more)";
}

} // namespace Vs::Translate
