#pragma once

#include <ios>
#include <streambuf>
#include <string_view>

namespace Vs::Kernel {

/// Lets a stream read bytes in memory, and go back in them. The bytes stay the caller's, and must outlive it.
class MemoryBuffer : public std::streambuf
{
public:
    explicit MemoryBuffer(std::string_view bytes);

protected:
    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode which) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override;
};

} // namespace Vs::Kernel
