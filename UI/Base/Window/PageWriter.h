#pragma once

#include "UI/Base/Program/VectorPage.h"

/// What Vu::writePage calls. In a library of its own, VuPage10, which is opened with the first page.
extern "C" bool quilletWritePage(const Vu::VectorPage& page, const std::wstring& path, Vs::Status& status);
