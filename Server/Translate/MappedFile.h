#pragma once

#include "Server/DataModel/Model/FileMapping.h"
#include "Server/Translate/Reporter.h"

#include <functional>
#include <memory>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>

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

/// Feeds bytes to a reader that takes a stream, and reports how far it has come, from 0 to 1.
class ReportingBuffer : public std::streambuf
{
public:
    using Report = std::function<void(double)>;
    ReportingBuffer(std::string_view bytes, Report report) : m_bytes(bytes), m_report(std::move(report)) {}
    ReportingBuffer(std::string_view bytes, Reporter& reporter)
        : ReportingBuffer(bytes, [&reporter](double fraction) { reporter.progress(fraction); })
    {
    }

protected:
    int_type underflow() override;

private:
    std::string_view m_bytes;
    Report m_report;
    size_t m_given = 0;
};

} // namespace Vs::Translate
