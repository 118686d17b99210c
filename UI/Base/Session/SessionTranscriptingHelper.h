#pragma once

#include <boost/uuid/uuid.hpp>

#include <map>
#include <string>

namespace Vs {
class Document;
} // namespace Vs

namespace Vu {

/// Lets the lines of a transcript find what an earlier line of the same transcript made: in a replay,
/// documents and assets get identifiers other than those recorded.
class SessionTranscriptingHelper
{
public:
    static SessionTranscriptingHelper* get();

    /// From now on `recorded` stands for `actual`. Nil identifiers add nothing.
    void addUuidMapping(const boost::uuids::uuid& recorded, const boost::uuids::uuid& actual);
    /// What a recorded identifier stands for; itself if nobody said.
    [[nodiscard]] boost::uuids::uuid actual(const boost::uuids::uuid& recorded) const;

    /// The open document that a text names: by its recorded or present identifier, by path, file name or
    /// display name. Null if there is none.
    [[nodiscard]] Vs::Document* document(const std::wstring& text) const;

    /// Whether the next recording tells nothing of what is open when it begins, since it is to be played on
    /// whatever is open then.
    void nextStartsAnywhere(bool value) { m_startsAnywhere = value; }
    bool nextStartsAnywhere() const { return m_startsAnywhere; }

private:
    SessionTranscriptingHelper() = default;
    bool m_startsAnywhere = false;
    std::map<boost::uuids::uuid, boost::uuids::uuid> m_actual;
};

} // namespace Vu
