#pragma once

#include <NCollection_DataMap.hxx>
#include <Standard_Version.hxx>
#include <TDF_Label.hxx>
#if OCC_VERSION_HEX < 0x070800
#include <TDF_LabelMapHasher.hxx>
#endif

namespace Vs::Kernel {

/// Values by labels. From 7.8 on, the kernel hashes labels without being told how.
#if OCC_VERSION_HEX < 0x070800
template <class Value>
using LabelMap = NCollection_DataMap<TDF_Label, Value, TDF_LabelMapHasher>;
#else
template <class Value>
using LabelMap = NCollection_DataMap<TDF_Label, Value>;
#endif

} // namespace Vs::Kernel
