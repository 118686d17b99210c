#include "Server/AddInMgr/IUIAddIn.h"
#include "Server/Base/Exception.h"
#include "Server/Base/Warning.h"

namespace {

/// Reports by warnings what is done with it, since that is a channel that every library has.
class ProbeAddIn : public Vs::Implements<ProbeAddIn, Vs::IUIAddIn>
{
public:
    ProbeAddIn() : Implements(L"" PROBE_NAME) {}
    void load() override
    {
        Vs::warn(toString() + L" load");
#ifdef PROBE_FAILING
        throw Vs::Exception("no licence");
#endif
    }
    void unload(bool last) override
    {
        Vs::warn(toString() + (last ? L" unload true" : L" unload false"));
#ifdef PROBE_SECOND
        throw Vs::Exception("stuck");
#endif
    }
};

} // namespace

extern "C" Vs::IAddIn* GetIAddIn()
{
    static ProbeAddIn addIn;
    return &addIn;
}
