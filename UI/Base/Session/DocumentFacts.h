#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Vs {
class Document;
}

namespace Vu {

/// What an add-in knows of documents beside what they are themselves: of which item one is a version, for
/// example. The properties panel lists it. Registered for as long as it lives; that there is something new is
/// told by DocumentRemarkSource. Main thread only.
class DocumentFacts
{
public:
    struct Fact
    {
        std::wstring title; ///< "Version".
        std::wstring value; ///< In one line, as a person reads it.
    };
    /// Asked whenever the panel is drawn anew: who has to ask elsewhere keeps what was learnt.
    using Source = std::function<std::vector<Fact>(const Vs::Document&)>;

    explicit DocumentFacts(Source source);
    ~DocumentFacts();
    DocumentFacts(const DocumentFacts&) = delete;
    DocumentFacts& operator=(const DocumentFacts&) = delete;

    /// What all sources know, in the order in which they came.
    [[nodiscard]] static std::vector<Fact> of(const Vs::Document& document);

private:
    Source m_source;
};

} // namespace Vu
