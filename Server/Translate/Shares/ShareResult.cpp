#include "Server/Translate/Shares/ShareResult.h"

#include "Server/Base/SystemCalls.h"
#include "Server/DataModel/Kernel/MemoryBuffer.h"

#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Iterator.hxx>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <istream>
#include <ostream>
#include <stdexcept>
#include <streambuf>
#include <unistd.h>

namespace Vs::Translate::Shares {

namespace {

struct Head
{
    uint64_t bytes = 0; ///< Of everything after it.
    uint32_t numbers = 0, shapes = 0, words = 0;
};

[[noreturn]] void refuse(const char* why)
{
    throw std::runtime_error(why);
}

void put(int descriptor, const void* data, size_t size)
{
    if (!writeAll(descriptor, {static_cast<const char*>(data), size}))
        refuse("not enough space for the result of reading");
}

/// Lets a stream write to a file.
class FileBuffer : public std::streambuf
{
public:
    explicit FileBuffer(int descriptor) : m_descriptor(descriptor)
    {
        setp(m_piece.data(), m_piece.data() + m_piece.size());
    }

protected:
    int_type overflow(int_type c) override
    {
        sync();
        return traits_type::eq_int_type(c, traits_type::eof()) ? traits_type::not_eof(c)
                                                               : sputc(traits_type::to_char_type(c));
    }
    int sync() override
    {
        put(m_descriptor, pbase(), static_cast<size_t>(pptr() - pbase()));
        setp(m_piece.data(), m_piece.data() + m_piece.size());
        return 0;
    }

private:
    int m_descriptor;
    std::array<char, 1 << 16> m_piece;
};

} // namespace

void ShareResult::write(int descriptor) const
{
    const off_t start = lseek(descriptor, 0, SEEK_END);
    Head head;
    std::vector<uint32_t> numbers;
    const BRep_Builder builder;
    TopoDS_Compound all;
    builder.MakeCompound(all);
    // Those without a shape are at the end.
    for (const bool isNull : {false, true})
        for (const auto& [number, shape] : shapes)
            if (shape.IsNull() == isNull) {
                numbers.push_back(number);
                if (!isNull)
                    builder.Add(all, shape);
                head.shapes += !isNull;
            }
    for (const TopoDS_Shape& body : bodies)
        builder.Add(all, body);
    std::string words;
    for (const std::string& warning : warnings)
        words += warning + '\0';
    head.numbers = static_cast<uint32_t>(numbers.size());
    head.words = static_cast<uint32_t>(words.size());
    put(descriptor, &head, sizeof head);
    put(descriptor, numbers.data(), numbers.size() * sizeof(uint32_t));
    put(descriptor, words.data(), words.size());
    FileBuffer buffer(descriptor);
    std::ostream stream(&buffer);
    stream.exceptions(std::ios::badbit | std::ios::failbit);
    BinTools::Write(all, stream, true, false, BinTools_FormatVersion_CURRENT);
    stream.flush();
    head.bytes = static_cast<uint64_t>(lseek(descriptor, 0, SEEK_END) - start) - sizeof head;
    // Only now is it complete.
    if (pwrite(descriptor, &head, sizeof head, start) != ssize_t(sizeof head))
        refuse(std::strerror(errno));
}

std::optional<ShareBlock> ShareBlock::take(std::string_view& bytes)
{
    if (bytes.empty())
        return std::nullopt;
    Head head;
    if (bytes.size() < sizeof head)
        refuse("what was read is cut off");
    std::memcpy(&head, bytes.data(), sizeof head);
    const uint64_t listed = uint64_t(head.numbers) * sizeof(uint32_t);
    if (head.bytes > bytes.size() - sizeof head || listed + head.words >= head.bytes ||
        head.shapes > head.numbers)
        refuse("what was read is cut off");
    ShareBlock block{.numbers = bytes.substr(sizeof head, listed),
                     .whole = bytes.substr(0, sizeof head + head.bytes)};
    block.rest = block.whole.substr(sizeof head + listed);
    bytes.remove_prefix(block.whole.size());
    return block;
}

std::optional<std::string>
ShareBlock::renumbered(const std::function<std::optional<uint32_t>(uint32_t)>& other) const
{
    std::string changed(whole);
    for (size_t at = 0; at < numbers.size(); at += sizeof(uint32_t)) {
        uint32_t number;
        std::memcpy(&number, numbers.data() + at, sizeof number);
        const auto now = other(number);
        if (!now)
            return std::nullopt;
        std::memcpy(changed.data() + sizeof(Head) + at, &*now, sizeof *now);
    }
    return changed;
}

bool ShareResult::take(std::string_view& bytes, ShareResult& result)
{
    const std::optional<ShareBlock> block = ShareBlock::take(bytes);
    if (!block)
        return false;
    Head head;
    std::memcpy(&head, block->whole.data(), sizeof head);
    result = {};
    std::vector<uint32_t> numbers(head.numbers);
    std::memcpy(numbers.data(), block->numbers.data(), block->numbers.size());
    for (std::string_view words = block->rest.substr(0, head.words); !words.empty();) {
        result.warnings.emplace_back(words.substr(0, words.find('\0')));
        words.remove_prefix(std::min(words.size(), result.warnings.back().size() + 1));
    }
    Kernel::MemoryBuffer buffer(block->rest.substr(head.words));
    std::istream stream(&buffer);
    TopoDS_Shape all;
    BinTools::Read(all, stream);
    if (all.IsNull())
        refuse("the result of reading is not a shape");
    for (TopoDS_Iterator each(all); each.More(); each.Next()) {
        if (result.shapes.size() < head.shapes)
            result.shapes.emplace_back(numbers[result.shapes.size()], each.Value());
        else
            result.bodies.push_back(each.Value());
    }
    if (result.shapes.size() != head.shapes)
        refuse("what was read lacks shapes");
    for (size_t i = head.shapes; i < numbers.size(); ++i)
        result.shapes.emplace_back(numbers[i], TopoDS_Shape());
    return true;
}

} // namespace Vs::Translate::Shares
