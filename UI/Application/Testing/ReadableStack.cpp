#include "UI/Application/Testing/ReadableStack.h"

#include "Server/Base/ChildProcess.h"
#include "Server/Base/Descriptor.h"
#include "UI/Application/CrashStack.h"

#include <boost/filesystem/operations.hpp>

#include <cstdlib>
#include <cxxabi.h>
#include <fcntl.h>
#include <map>
#include <memory>
#include <regex>
#include <sstream>
#include <unistd.h>
#include <vector>

namespace Quillet {
namespace {

struct Call
{
    std::string library, offset, name;
};

std::string demangled(const std::string& name)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status), &std::free);
    return status == 0 ? text.get() : name;
}

/// The program's output; nothing if it can't be run.
std::string outputOf(const std::string& program, std::vector<std::string> arguments)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return {};
    const Vs::Descriptor from(ends[0]);
    Vs::Descriptor to(ends[1]);
    Vs::ChildProcess process;
    const int error = process.start({.program = program,
                                     .arguments = std::move(arguments),
                                     .name = {},
                                     .folder = {},
                                     .descriptors = {{to.get(), 1}}});
    to = Vs::Descriptor(); // The child alone has it now, so that reading comes to an end.
    std::string output;
    char buffer[4096];
    for (ssize_t count; error == 0 && (count = read(from.get(), buffer, sizeof buffer)) > 0;)
        output.append(buffer, static_cast<size_t>(count));
    return output;
}

void findNames(std::vector<Call>& calls)
{
    std::map<std::string, std::vector<Call*>> unnamed;
    for (Call& call : calls)
        if (call.name.empty())
            unnamed[call.library].push_back(&call);
    for (const auto& [library, those] : unnamed) {
        // The program itself has its file's name alone there, wherever it is.
        std::vector<std::string> arguments = {"-Cfe",
                                              library.find('/') == library.npos
                                                  ? boost::filesystem::read_symlink("/proc/self/exe").string()
                                                  : library};
        for (const Call* call : those)
            arguments.push_back(call->offset);
        // Two lines for each: the function and its source location.
        std::istringstream lines(outputOf("addr2line", std::move(arguments)));
        std::string name, place;
        for (Call* call : those)
            if (std::getline(lines, name) && std::getline(lines, place) && name != "??")
                call->name = place.starts_with("??") ? name : name + " at " + place;
    }
}

} // namespace

std::string readableStack(const std::string& errors)
{
    const size_t head = errors.rfind(kStackHead);
    if (head == std::string::npos)
        return {};
    static const std::regex form(R"(^(.+)\((.*)\+(0x[0-9a-f]+)\) ?\[0x[0-9a-f]+\]$)");
    std::istringstream lines(errors.substr(head));
    std::vector<Call> calls;
    std::string line;
    std::getline(lines, line);
    for (std::smatch found; std::getline(lines, line) && std::regex_match(line, found, form);)
        calls.push_back({found[1], found[3], found[2].length() ? demangled(found[2]) : std::string()});
    findNames(calls);
    std::string text;
    for (const Call& call : calls)
        text += call.library.substr(call.library.rfind('/') + 1) + ": " +
                (call.name.empty() ? call.offset : call.name) + '\n';
    return text;
}

} // namespace Quillet
