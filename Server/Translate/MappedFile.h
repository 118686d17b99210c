#pragma once

#include "Server/DataModel/Model/FileMapping.h"
#include "Server/Translate/Reporter.h"

#include <memory>
#include <streambuf>
#include <string>
#include <string_view>

namespace Vs::Translate {

/// A file's bytes in memory. Throws Unreadable.
class MappedFile
{
public:
    explicit MappedFile(const std::string& path);

    std::string_view bytes() const { return m_mapping->bytes(); }

private:
    std::shared_ptr<const FileMapping> m_mapping;
};

/// Gives bytes to a reader that takes a stream, and reports how far it has come.
class ReportingBuffer : public std::streambuf
{
public:
    ReportingBuffer(std::string_view bytes, Reporter& reporter) : m_bytes(bytes), m_reporter(reporter) {}

protected:
    int_type underflow() override;

private:
    std::string_view m_bytes;
    Reporter& m_reporter;
    size_t m_given = 0;
};

} // namespace Vs::Translate
