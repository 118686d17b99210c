#pragma once

#include "Server/Base/Event.h"

#include <functional>
#include <string>

namespace Vs {
class Document;
}

namespace Vu {

/// Hears that a remark may say something else now.
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

/// What an add-in has to say about documents, in a word or two behind their names: that one waits to be sent,
/// for example. Registered for as long as it lives. Main thread only.
class DocumentRemark
{
public:
    /// Empty where there is nothing to say.
    using Text = std::function<std::wstring(const Vs::Document&)>;

    explicit DocumentRemark(Text text);
    ~DocumentRemark();
    DocumentRemark(const DocumentRemark&) = delete;
    DocumentRemark& operator=(const DocumentRemark&) = delete;

    /// All that is said of the document, with commas between.
    [[nodiscard]] static std::wstring of(const Vs::Document& document);

private:
    Text m_text;
};

} // namespace Vu
