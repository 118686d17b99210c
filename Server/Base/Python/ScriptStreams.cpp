#include "Server/Base/Python/ScriptStreams.h"

#include "Server/Base/Python/Arguments.h"
#include "Server/Base/Python/OwnCode.h"
#include "Server/Base/PythonManager.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"

#include <csignal>
#include <cstdio>
#include <utility>

namespace Vs::Python {

namespace py = pybind11;

namespace {

/// What replaces the standard streams: a script's output is the program's, which puts it between its answers.
/// The numbers of the descriptors are the process's own, for programs that a script starts. A script reads
/// the program's own input, unless that is for others to read; then it reads nothing. A script that sleeps on
/// the main thread wakes up now and then, so that it can be cancelled.
constexpr const char* kStreams = R"(
import codecs, io, signal, sys, threading, time

class _Bytes(io.RawIOBase):
    def __init__(self, stream):
        self._stream = stream
        self._decoder = codecs.getincrementaldecoder('utf-8')('replace')
    def writable(self):
        return True
    def write(self, data):
        data = bytes(data)
        self._stream.write(self._decoder.decode(data))
        return len(data)
    def fileno(self):
        return self._stream.fileno()

class _Stream(io.TextIOBase):
    encoding = 'utf-8'
    errors = 'replace'
    def __init__(self, write, descriptor, name):
        self._write = write
        self._descriptor = descriptor
        self.name = name
        self.buffer = _Bytes(self)
    def writable(self):
        return True
    def write(self, text):
        self._write(text)
        return len(text)
    def fileno(self):
        _flush()
        return self._descriptor

def _sleep(seconds, sleep=time.sleep, now=time.monotonic):
    if seconds < 0 or threading.current_thread() is not threading.main_thread():
        return sleep(seconds)
    end = now() + seconds
    while (left := end - now()) > 0:
        sleep(min(left, 0.03))

time.sleep = _sleep
sys.stdout = sys.__stdout__ = _Stream(_write_output, 1, '<stdout>')
sys.stderr = sys.__stderr__ = _Stream(_write_error, 2, '<stderr>')
sys.stdin = sys.__stdin__ = (open(0, encoding='utf-8', errors='surrogateescape', closefd=False) if _reads_input
                             else io.TextIOWrapper(io.BytesIO(), encoding='utf-8'))
signal.signal(signal.SIGINT, signal.default_int_handler)
)";

} // namespace

void ScriptStreams::install()
{
    py::dict names;
    const auto writer = [this](Kind kind) {
        return py::cpp_function(
            [this, kind](const py::str& text) { write(kind, Strings::narrow(wideText(text))); });
    };
    names["_write_output"] = writer(Kind::Output);
    names["_write_error"] = writer(Kind::Error);
    // Output written to the descriptor directly must not precede what was printed.
    names["_flush"] = py::cpp_function([] { std::fflush(nullptr); });
    names["_reads_input"] = PythonManager::get()->readsInput();
    // Python must know the signal to raise KeyboardInterrupt, but the handler stays the program's.
    struct sigaction before;
    sigaction(SIGINT, nullptr, &before);
    execute(kStreams, names);
    sigaction(SIGINT, &before, nullptr);
}

void ScriptStreams::write(Kind kind, const std::string& text)
{
    collect(kind, text);
    if (std::this_thread::get_id() == m_mainThread)
        show();
}

void ScriptStreams::flush()
{
    for (const Kind kind : {Kind::Output, Kind::Error})
        if (!m_begun[static_cast<int>(kind)].empty())
            collect(kind, "\n");
    show();
}

void ScriptStreams::collect(Kind kind, const std::string& text)
{
    std::lock_guard lock(m_mutex);
    std::string& begun = m_begun[static_cast<int>(kind)];
    size_t start = 0;
    for (size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
        begun.append(text, start, end - start);
        m_lines.push_back({kind, std::exchange(begun, {})});
        start = end + 1;
    }
    begun.append(text, start);
}

void ScriptStreams::show()
{
    std::vector<Line> lines;
    {
        std::lock_guard lock(m_mutex);
        lines.swap(m_lines);
    }
    TextOutput* output = TextCommandMgr::get()->output();
    for (const Line& line : lines) {
        if (!output)
            std::fprintf(line.kind == Kind::Output ? stdout : stderr, "%s\n",
                         Strings::forTerminal(line.text).c_str());
        for (TextOutput* each : {output, PythonManager::get()->display()}) {
            if (each && line.kind == Kind::Output)
                each->message(Strings::widen(line.text));
            else if (each)
                each->error(Strings::widen(line.text));
        }
    }
}

} // namespace Vs::Python
