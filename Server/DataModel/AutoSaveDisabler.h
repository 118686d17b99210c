#pragma once

namespace Vs {

class Document;

/// Keeps auto-save from writing a document, or any document if that is null, for as long as it lives. May be
/// nested.
class [[nodiscard]] AutoSaveDisabler
{
public:
    explicit AutoSaveDisabler(Document* document);
    ~AutoSaveDisabler();
    AutoSaveDisabler(const AutoSaveDisabler&) = delete;
    AutoSaveDisabler& operator=(const AutoSaveDisabler&) = delete;

    /// Whether auto-save must leave this document alone now.
    [[nodiscard]] static bool disabled(const Document* document);

private:
    Document* m_document;
};

} // namespace Vs
