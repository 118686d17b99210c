#pragma once

#include "Server/AddInMgr/AddInMgr.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Status.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"

#include <algorithm>
#include <vector>

namespace Benchmarks {

/// Does the work in the whole program, with its add-ins and widgets; with `headless`, on no screen. What the
/// program keeps goes into the folder `profile`.
template <class Work>
void inProgram(const char* profile, int& argc, char** argv, bool headless, Work work)
{
    Vs::PathInfo::profileDirectory(profile);
    Vu::installHost();
    Vu::Application::initialize(argc, argv, headless);
    Vs::Status status;
    Vs::AddInMgr::get()->loadAddIns(status);
    Vu::Application::get()->needGui();
    work();
    Vu::Application::get()->shutDown();
    Vs::AddInMgr::get()->unloadAddIns();
}

inline double median(std::vector<double> times)
{
    std::ranges::sort(times);
    return times[times.size() / 2];
}

} // namespace Benchmarks
