#pragma once

#include "Server/DataModel/DocumentEvents.h"

#include <QObject>

namespace Vs {
class Asset;
}

namespace Vu::Commands {

/// Stores a picture of each foreign file that is opened, for when it next appears on the home screen. Main
/// thread only.
class ForeignPictures : public QObject, private Vs::DocumentEventSite
{
public:
    /// From now on, until the program ends; call once.
    static void begin();

    /// A picture of the asset as it is now. It is stored if nothing has been changed since the file was read.
    static void drawn(const Vs::Asset& asset, const std::string& picture);

private:
    ForeignPictures();

    void documentOpened(Vs::DocumentEvent* event) override;
    static void draw(const std::wstring& file);
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
