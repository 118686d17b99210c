#include "Server/DataModel/Kernel/XdeStorage.h"

#include "Server/DataModel/Kernel/LabelIndex.h"
#include "Server/DataModel/Kernel/MemoryBuffer.h"
#include "Server/DataModel/Model/ForkedChild.h"

#include <BinDrivers_DocumentStorageDriver.hxx>
#include <BinXCAFDrivers.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <XCAFApp_Application.hxx>

#include <iostream>
#include <mutex>
#include <stdexcept>
#include <streambuf>
#include <string>

namespace Vs::Kernel {

namespace {

class Application : public XCAFApp_Application
{
public:
    /// To be called before any use, and once there is a handle on the application: each call makes one of its
    /// own. Those that read or write have what they did in mind, and one that broke off has half of it: the
    /// next model would be mixed up with the one that failed.
    void newDrivers()
    {
        myReaders.Clear();
        myWriters.Clear();
        BinXCAFDrivers::DefineFormat(this);
    }
};

const Handle(Application) & application()
{
    static const Handle(Application) instance = [] {
        // The kernel prints to standard output, which belongs to the user.
        Message::DefaultMessenger()->ChangePrinters().Clear();
        Handle(Application) made = new Application;
        made->newDrivers();
        made->MessageDriver()->ChangePrinters().Clear();
        return made;
    }();
    return instance;
}

/// Reads or writes; the drivers go where that fails.
template <class Work>
void withDrivers(Work&& work)
{
    try {
        work();
    } catch (...) {
        application()->newDrivers();
        throw;
    }
}

// The application's list of documents is not thread-safe.
std::mutex& applicationMutex()
{
    static std::mutex mutex;
    return mutex;
}

// Some of the kernel's readers bypass its messengers and print what they don't understand, that is, whatever
// a stranger has put into a file. Nobody else writes to these streams.
class Hushed
{
public:
    Hushed() : m_output(std::cout.rdbuf(nullptr)), m_errors(std::cerr.rdbuf(nullptr)) {}
    ~Hushed()
    {
        std::cout.rdbuf(m_output);
        std::cerr.rdbuf(m_errors);
    }
    Hushed(const Hushed&) = delete;
    Hushed& operator=(const Hushed&) = delete;

private:
    std::streambuf* m_output;
    std::streambuf* m_errors;
};

} // namespace

Handle(TDocStd_Document) newXdeDocument()
{
    Handle(TDocStd_Document) document;
    const std::lock_guard lock(applicationMutex());
    application()->NewDocument("BinXCAF", document);
    return document;
}

Handle(TDocStd_Document) readXdeDocument(std::string_view bytes)
{
    Handle(TDocStd_Document) document;
    MemoryBuffer buffer(bytes);
    std::istream stream(&buffer);
    const std::lock_guard lock(applicationMutex());
    withDrivers([&] {
        const Hushed hushed;
        const PCDM_ReaderStatus status = application()->Open(stream, document);
        if (status != PCDM_RS_OK || document.IsNull())
            throw std::runtime_error("the model's data can't be read (reason " + std::to_string(status) +
                                     ")");
    });
    return document;
}

void writeXdeDocument(const Handle(TDocStd_Document) & document, std::ostream& stream)
{
    std::unique_lock lock(applicationMutex(), std::defer_lock);
    if (!ForkedChild::is())
        lock.lock();
    withDrivers([&] {
        // Normals that came with triangles can't be recovered from anywhere else.
        const auto driver =
            Handle(BinDrivers_DocumentStorageDriver)::DownCast(application()->WriterFromFormat("BinXCAF"));
        if (!driver.IsNull())
            driver->SetWithNormals(application()->MessageDriver(), true);
        const PCDM_StoreStatus status = application()->SaveAs(document, stream);
        if (status != PCDM_SS_OK || !stream)
            throw std::runtime_error("the model's data can't be written (reason " + std::to_string(status) +
                                     ")");
    });
}

void closeXdeDocument(const Handle(TDocStd_Document) & document)
{
    forgetLabels(document);
    const std::lock_guard lock(applicationMutex());
    application()->Close(document);
}

} // namespace Vs::Kernel
