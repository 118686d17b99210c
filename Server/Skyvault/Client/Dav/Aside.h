#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <memory>
#include <string>

namespace Vs::Cloud {

/// What a server has under a file's name, moved to the name of a copy beside it until the new version is
/// there. It is for servers that neither lock nor refuse: whatever another writes before the move is in the
/// file that was moved, and not written over. Who is killed meanwhile leaves it where everybody sees it.
class Aside
{
public:
    /// Moves `known`, or what has come in its place. There is none if nothing had the name any more.
    static DriveResult take(Session& session, const DriveEntry& known, std::unique_ptr<Aside>& aside);

    /// Moves it back, if nothing has its name meanwhile.
    void giveBack();
    /// Removes it if it is the known version; if it is another's, it stays as the copy that it is. `after` is
    /// the new version, by whose time the server's clock is known.
    void drop(const DriveEntry& after);

private:
    Aside(Session& session, DriveEntry known, std::string path);
    DriveResult move(const std::string& from, const std::string& to) const;

    Session& m_session;
    const DriveEntry m_known;
    const std::string m_path;
};

} // namespace Vs::Cloud
