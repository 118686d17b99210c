#pragma once

#include "Server/Base/Event.h"

#include <functional>
#include <string>

namespace Vs {
class Document;
}

namespace Vu {

/// Told that a remark may have changed.
class DocumentRemarkSite : public Vs::EventSite
{
public:
    virtual void documentRemarksChanged(Vs::Event*) {}
};

class DocumentRemarkSource : public Vs::EventSource<DocumentRemarkSite>
{
public:
    static DocumentRemarkSource* get()
    {
        static auto* const source = new DocumentRemarkSource;
        return source;
    }
    void fireDocumentRemarksChanged(Vs::Event* event)
    {
        fire(&DocumentRemarkSite::documentRemarksChanged, event);
    }
};

/// An add-in's remark about documents, in a word or two after their names: that one waits to be sent, for
/// example. Registered for as long as it lives. Main thread only.
class DocumentRemark
{
public:
    /// Empty where there is nothing to say.
    using Text = std::function<std::wstring(const Vs::Document&)>;

    explicit DocumentRemark(Text text);
    ~DocumentRemark();
    DocumentRemark(const DocumentRemark&) = delete;
    DocumentRemark& operator=(const DocumentRemark&) = delete;

    /// All remarks about the document, separated by commas.
    [[nodiscard]] static std::wstring of(const Vs::Document& document);

private:
    Text m_text;
};

} // namespace Vu
