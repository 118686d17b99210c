#include "Server/DataModel/Kernel/EditableModel.h"

// The entry point that the data model finds when it opens this library.

extern "C" Vs::ModelKernel* quilletMakeModel()
{
    return new Vs::Kernel::EditableModel;
}

extern "C" Vs::ModelKernel* quilletReadModel(const char* bytes, size_t size)
{
    return new Vs::Kernel::EditableModel(std::string_view(bytes, size));
}
