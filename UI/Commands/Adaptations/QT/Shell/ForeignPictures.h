#pragma once

#include "Server/DataModel/DocumentEvents.h"

#include <QObject>

namespace Vs {
class Asset;
}

namespace Vu::Commands {

/// Keeps a picture of each foreign file that is opened, for the next time that it stands on the home screen.
/// Main thread only.
class ForeignPictures : public QObject, private Vs::DocumentEventSite
{
public:
    /// From now on, to the end of the program; once.
    static void begin();

    /// A picture of the asset as it is now. It is kept if nothing of what was read has been changed.
    static void drawn(const Vs::Asset& asset, const std::string& picture);

private:
    ForeignPictures();

    void documentOpened(Vs::DocumentEvent* event) override;
    static void draw(const std::wstring& file);
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
