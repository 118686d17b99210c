#pragma once

namespace Vs::Python {

/// The statements of a transcript, each with its first line and its source, compiled one by one: a million of
/// them take no more memory than their text. Most are one line long. What cannot be compiled is given as
/// None.
constexpr const char* kStatements = R"(
import __future__, codeop, io, re, types

goes_on = re.compile(r'[\s#)\]}]|(elif|else|except|finally)\b')
features = sum(getattr(__future__, name).compiler_flag for name in __future__.all_feature_names)
flags = 0
complete = codeop.CommandCompiler()

def moved(code, lines):
    """The code and all within it, as if it stood so many lines further down."""
    inner = tuple(moved(one, lines) if isinstance(one, types.CodeType) else one for one in code.co_consts)
    return code.replace(co_firstlineno=code.co_firstlineno + lines, co_consts=inner)

def compiled(source, line, name):
    global flags
    try:
        code = compile(source, name, 'exec', flags, True)
    except SyntaxError:
        return compile('\n' * (line - 1) + source, name, 'exec', flags, True)
    flags |= code.co_flags & features
    complete.compiler.flags |= flags
    return moved(code, line - 1)

def ready(source, line, name):
    """Its code; None if it is not Python, and False if it may become some with more lines."""
    try:
        return compiled(source, line, name)
    except (SyntaxError, ValueError):
        try:
            return None if complete(source, name, 'exec') else False
        except (SyntaxError, ValueError, OverflowError):
            return None

def statements(text, name):
    source, start = '', 1
    for number, line in enumerate(io.StringIO(text.decode('utf-8-sig', 'replace'), None), 1):
        if source and not goes_on.match(line) and not source.endswith('\\\n'):
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
