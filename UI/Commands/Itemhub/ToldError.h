#pragma once

#include "Server/Itemhub/ItemhubEvents.h"

#include <string>

namespace Vu::Commands {

/// Captures what a command reports to the user when it ends without an error of its own.
class ToldError : public Vs::ItemhubEventSite
{
public:
    ToldError() { Vs::ItemhubEventSource::get()->subscribe(this); }
    ~ToldError() override { Vs::ItemhubEventSource::get()->unsubscribe(this); }
    void onErrorMessage(Vs::ItemhubErrorEvent* event) override { message = event->getErrorMessage(); }

    std::wstring message;
};

} // namespace Vu::Commands
