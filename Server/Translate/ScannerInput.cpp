#include "Server/Translate/ScannerInput.h"

#include <dlfcn.h>
#include <utility>

namespace {

thread_local std::istream* s_stream = nullptr;

/// The kernel's own, for what is read elsewhere, such as files that a file refers to.
int takeFromKernel(void* scanner, char* buffer, int size)
{
    using Take = int (*)(void*, char*, int);
    static const auto take = reinterpret_cast<Take>(dlsym(RTLD_NEXT, "_ZN13stepFlexLexer10LexerInputEPci"));
    return take ? take(scanner, buffer, size) : 0;
}

} // namespace

// The kernel's class, of which this one function is public to the dynamic linker: what the program itself
// defines is found first, also for the kernel's table of virtual functions. Where a kernel has no such class,
// nobody calls it.
class __attribute__((visibility("default"))) stepFlexLexer
{
public:
    int LexerInput(char* buffer, int size);
};

int stepFlexLexer::LexerInput(char* buffer, int size)
{
    if (!s_stream)
        return takeFromKernel(this, buffer, size);
    s_stream->read(buffer, size);
    return static_cast<int>(s_stream->gcount());
}

namespace Vs::Translate {

ScannerInput::ScannerInput(std::istream& stream) : m_outer(std::exchange(s_stream, &stream)) {}

ScannerInput::~ScannerInput()
{
    s_stream = m_outer;
}

} // namespace Vs::Translate
