#include "Server/Itemhub/Private/Transport.h"

#include "Server/Base/SiblingLibrary.h"

#include <stdexcept>

namespace Vs::Itemhub {

ItemTransport& ItemTransport::get()
try {
    using Entry = ItemTransport* (*)();
    static ItemTransport* const found =
        SiblingLibrary("libVsItemhubClient10.so").function<Entry>("quilletItemTransport")();
    return *found;
} catch (const std::runtime_error& error) {
    throw Web::ItemhubException(Web::ItemhubException::Kind::Local, error.what());
}

} // namespace Vs::Itemhub
