#pragma once

#include "Server/Skyvault/Drive.h"
#include "Tests/Support/Servers/FaultProxy.h"

#include <functional>
#include <string>
#include <vector>

/// What may go wrong with any one request to a drive.
struct FaultCase
{
    const char* name;
    std::function<TestSupport::Fault()> fault;
    /// What may be answered other than success; that is possible where a request may be asked again or its
    /// answer doesn't matter.
    std::vector<Vs::CloudErrorState> states;
    bool forListings = false; ///< An answer that only a PROPFIND could have.
    bool isLong = false;      ///< What is looked at anywhere is read by the code that reads listings.

    bool isStall() const { return std::string(name).find("stall") != std::string::npos; }
};

const std::vector<FaultCase>& faults();

/// Disturbs the request of that number, counted from now on, and no other. Only what stalls is waited for in
/// a hurry: on a busy machine everything else is slow as well. `endDisturbance` lets all pass again.
void disturbOnce(TestSupport::FaultProxy& proxy, Vs::Cloud::Drive& drive, int number, const FaultCase& one);
void endDisturbance(TestSupport::FaultProxy& proxy, Vs::Cloud::Drive& drive);

/// That an operation with that fault in it was done, or ended with one state that it may have and a text of
/// one line, without the secret.
void expectClear(const Vs::Cloud::DriveResult& result, const FaultCase& one, const std::string& secret);
