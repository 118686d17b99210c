#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/DocumentEvents.h"

namespace Vs {

DocumentEventSource* DocumentEventSource::get()
{
    static DocumentEventSource source;
    return &source;
}

AssetEventSource* AssetEventSource::get()
{
    static AssetEventSource source;
    return &source;
}

} // namespace Vs
