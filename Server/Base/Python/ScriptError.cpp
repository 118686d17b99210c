#include "Server/Base/Python/ScriptError.h"

#include "Server/Base/Python/Arguments.h"
#include "Server/Base/Strings.h"

namespace Vs::Python {

namespace py = pybind11;

namespace {

struct Place
{
    std::wstring file;
    long line = 0;
};

Place placeOf(const py::error_already_set& error, const std::wstring& script)
{
    if (error.matches(PyExc_SyntaxError)) {
        const py::object name = py::getattr(error.value(), "filename", py::none());
        const py::object line = py::getattr(error.value(), "lineno", py::none());
        if (!name.is_none() && !line.is_none())
            return {wideText(name), line.cast<long>()};
    }
    Place innermost{script, 0}, inScript;
    for (py::object trace = error.trace(); trace && !trace.is_none(); trace = trace.attr("tb_next")) {
        innermost = {wideText(trace.attr("tb_frame").attr("f_code").attr("co_filename")),
                     trace.attr("tb_lineno").cast<long>()};
        if (innermost.file == script)
            inScript = innermost;
    }
    return inScript.line > 0 ? inScript : innermost;
}

std::string tracebackWithoutLastLine(const py::error_already_set& error)
{
    // A syntax error has passed through no code.
    const py::object trace = error.trace() ? py::object(error.trace()) : py::none();
    const py::list parts =
        py::module_::import("traceback").attr("format_exception")(error.type(), error.value(), trace);
    std::wstring text;
    for (size_t i = 0; i + 1 < parts.size(); ++i)
        text += wideText(parts[i]);
    return Strings::narrow(text);
}

std::wstring lastLineOfTraceback(const py::error_already_set& error)
{
    const py::list lines =
        py::module_::import("traceback").attr("format_exception_only")(error.type(), error.value());
    std::wstring text = lines.empty() ? std::wstring() : wideText(lines[lines.size() - 1]);
    while (!text.empty() && text.back() == L'\n')
        text.pop_back();
    return text;
}

/// As a shell would see it; what is not a number is a failure all the same.
int exitCodeOf(const py::object& code)
{
    if (!PyLong_Check(code.ptr()))
        return 1;
    const int low = static_cast<int>(code.attr("__and__")(0xff).cast<long>());
    return low == 0 ? 1 : low;
}

} // namespace

ScriptEnd scriptEnd(py::error_already_set& error, const std::string& file)
{
    const std::wstring script = Strings::fromBytes(file);
    try {
        const Place place = placeOf(error, script);
        const std::wstring where =
            place.file + (place.line > 0 ? L':' + std::to_wstring(place.line) : std::wstring()) + L": ";
        if (error.matches(PyExc_SystemExit)) {
            const py::object code = error.value().attr("code");
            if (code.is_none() || (PyLong_Check(code.ptr()) && code.equal(py::int_(0))))
                return {false, 0, {}, {}};
            return {true,
                    exitCodeOf(code),
                    where + (PyLong_Check(code.ptr()) ? L"The script ended with code " : L"") +
                        wideText(code),
                    {}};
        }
        if (error.matches(PyExc_KeyboardInterrupt))
            return {true, 1, where + L"The script was cancelled.", {}};
        return {true, 1, where + lastLineOfTraceback(error), tracebackWithoutLastLine(error)};
    } catch (const std::exception& failure) {
        // An exception whose own text cannot be made.
        return {true, 1, script + L": " + Strings::widen(failure.what()), {}};
    }
}

} // namespace Vs::Python
