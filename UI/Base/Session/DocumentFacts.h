#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Vs {
class Document;
}

namespace Vu {

/// What an add-in knows about documents besides their own data: of which item one is a version, for example.
/// The properties panel lists it. Registered for as long as it lives; DocumentRemarkSource announces that
/// there is something new. Main thread only.
class DocumentFacts
{
public:
    struct Fact
    {
        std::wstring title; ///< "Version".
        std::wstring value; ///< In one line, as a person reads it.
    };
    /// Called whenever the panel is redrawn: whoever has to ask elsewhere caches the answers.
    using Source = std::function<std::vector<Fact>(const Vs::Document&)>;

    explicit DocumentFacts(Source source);
    ~DocumentFacts();
    DocumentFacts(const DocumentFacts&) = delete;
    DocumentFacts& operator=(const DocumentFacts&) = delete;

    /// What all sources know, in the order in which they were added.
    [[nodiscard]] static std::vector<Fact> of(const Vs::Document& document);

private:
    Source m_source;
};

} // namespace Vu
