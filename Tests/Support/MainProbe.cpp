// Tests that go wrong on purpose: check_main.py sees what the main of all tests makes of them.

#include "Tests/Support/Process.h"
#include "Tests/Support/Seed.h"

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>

TEST(Probe, Passes) {}

TEST(Probe, Crashes)
{
    std::raise(SIGSEGV);
}

TEST(Probe, CrashesAsWell)
{
    std::abort();
}

TEST(Probe, EndsTheProcess)
{
    std::exit(0);
}

TEST(Probe, LeavesFilesBehind)
{
    new TestSupport::ScratchFolder;
    for (const char* variable : {"TMPDIR", "HOME", "XDG_RUNTIME_DIR"})
        std::cout << variable << '=' << std::getenv(variable) << '\n';
    std::cout << "seed " << TestSupport::seed() << '\n';
}
