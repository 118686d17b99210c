#include "Server/Base/Python/ScriptStreams.h"

#include "Server/Base/PythonManager.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"

#include <cstdio>
#include <utility>

namespace Vs::Python {

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
