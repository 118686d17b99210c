#include "Server/DataModel/Kernel/MemoryBuffer.h"

namespace Vs::Kernel {

MemoryBuffer::MemoryBuffer(std::string_view bytes)
{
    char* const begin = const_cast<char*>(bytes.data()); // Nothing writes to what a stream only reads.
    setg(begin, begin, begin + bytes.size());
}

MemoryBuffer::pos_type MemoryBuffer::seekoff(off_type offset, std::ios_base::seekdir from,
                                             std::ios_base::openmode)
{
    const off_type size = egptr() - eback();
    const off_type base = from == std::ios_base::beg   ? 0
                          : from == std::ios_base::cur ? gptr() - eback()
                                                       : size;
    const off_type position = base + offset;
    if (position < 0 || position > size)
        return pos_type(off_type(-1));
    setg(eback(), eback() + position, egptr());
    return pos_type(position);
}

MemoryBuffer::pos_type MemoryBuffer::seekpos(pos_type position, std::ios_base::openmode which)
{
    return seekoff(off_type(position), std::ios_base::beg, which);
}

} // namespace Vs::Kernel
