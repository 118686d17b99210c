#pragma once

#include <istream>

namespace Vs::Translate {

/// While it exists, the kernel's scanner of STEP text takes what it reads on this thread from a stream by
/// blocks. The kernel's own asks for one character at a time, and goes back to the beginning of the word for
/// each: that was a tenth of the reading of a file, and grows with the square of a text's length.
class ScannerInput
{
public:
    explicit ScannerInput(std::istream& stream);
    ~ScannerInput();
    ScannerInput(const ScannerInput&) = delete;
    ScannerInput& operator=(const ScannerInput&) = delete;

private:
    std::istream* m_outer;
};

} // namespace Vs::Translate
