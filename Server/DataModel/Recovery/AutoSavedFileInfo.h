#pragma once

#include <string>
#include <utility>

namespace Vs {

/// What is known about a recovery file: a native file, with the suffix `.backup`, of a document as it was
/// when a run of the program ended without closing it.
class AutoSavedFileInfo
{
public:
    struct Values
    {
        std::wstring fileName;
        std::wstring autoSavedFile;
        std::wstring oriSourceFile;
        std::wstring fileSavedTime;
        std::string docIdentifier;
        std::wstring attachmentUrl;
        bool isCloudFile = false;
        bool isOlder = false;
    };

    AutoSavedFileInfo() = default;
    explicit AutoSavedFileInfo(Values values) : m_values(std::move(values)) {}

    /// The document's display name.
    const std::wstring& fileName() const { return m_values.fileName; }
    /// The recovery file.
    const std::wstring& autoSavedFile() const { return m_values.autoSavedFile; }
    /// The file that was being worked on; empty if the document was never saved, or if that is now something
    /// other than a file.
    const std::wstring& oriSourceFile() const { return m_values.oriSourceFile; }
    /// When it was saved, in local time: "yyyyMMddThhmmss".
    const std::wstring& fileSavedTime() const { return m_values.fileSavedTime; }
    /// Whether it is an attachment stored in the lifecycle service.
    bool isCloudFile() const { return m_values.isCloudFile; }
    const std::wstring& attachmentUrl() const { return m_values.attachmentUrl; }
    /// DocumentType::identifier.
    const std::string& docIdentifier() const { return m_values.docIdentifier; }
    /// Whether the last one was damaged, and this is the previous one.
    bool isOlder() const { return m_values.isOlder; }

private:
    Values m_values;
};

} // namespace Vs
