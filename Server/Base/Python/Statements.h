#pragma once

namespace Vs::Python {

/// The statements of a transcript, each with its first line and its source, compiled one by one: a million of
/// them take no more memory than their text. Most are one line long. What cannot be compiled comes as None.
constexpr const char* kStatements = R"(
import codeop, io, re

goes_on = re.compile(r'[\s#)\]}]|(elif|else|except|finally)\b')

def compiled(source, line, name):
    if '\n' not in source[:-1]:
        try:
            return compile(source, name, 'exec').replace(co_firstlineno=line)
        except SyntaxError:
            pass
    return compile('\n' * (line - 1) + source, name, 'exec')

def ready(source, line, name):
    """Its code; None if it is not Python, and False if it may become some with more lines."""
    try:
        return compiled(source, line, name)
    except (SyntaxError, ValueError):
        try:
            return None if codeop.compile_command(source, name, 'exec') else False
        except (SyntaxError, ValueError, OverflowError):
            return None

def statements(text, name):
    source, start = '', 1
    for number, line in enumerate(io.StringIO(text.decode('utf-8-sig', 'replace'), None), 1):
        if source and not goes_on.match(line):
            code = ready(source, start, name)
            if code is not False:
                yield start, source.rstrip('\n'), code
                source = ''
        if not source:
            start = number
        if source or line.strip() and not line.startswith('#'):
            source += line
    if source:
        yield start, source.rstrip('\n'), ready(source, start, name) or None
)";

} // namespace Vs::Python
