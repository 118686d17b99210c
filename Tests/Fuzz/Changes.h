#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

/// Changes a stretch of bytes as an input says: eight bytes of it are a place (three), what is done there
/// (one) and a number (four).
inline void applyChanges(std::string& bytes, size_t begin, size_t end, const uint8_t* input, size_t size)
{
    for (; size >= 8 && end - begin >= 8; input += 8, size -= 8) {
        const size_t offset = (input[0] | input[1] << 8 | input[2] << 16) % (end - begin - 7);
        char* const byte = &bytes[begin + offset];
        char* const number = &bytes[begin + offset / 4 * 4];
        uint32_t value, old;
        std::memcpy(&value, input + 4, sizeof value);
        std::memcpy(&old, number, sizeof old);
        const uint32_t small = value & 0xff;
        switch (input[3] % 4) {
        case 0:
            *byte = static_cast<char>(value);
            continue;
        case 1:
            value = small;
            break;
        case 2:
            value = old + small - 128;
            break;
        default:
            break;
        }
        std::memcpy(number, &value, sizeof value);
    }
}
