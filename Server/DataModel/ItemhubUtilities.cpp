#include "Server/DataModel/ItemhubUtilities.h"

namespace Vs {

namespace {
ItemhubUtilities* s_client = nullptr;
}

ItemhubUtilities::~ItemhubUtilities() = default;

ItemhubUtilities* ItemhubUtilities::get()
{
    return s_client;
}

void ItemhubUtilities::install(ItemhubUtilities* client)
{
    s_client = client;
}

} // namespace Vs
