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
    /// What may be answered other than success; that is possible if a request may be repeated or its answer
    /// doesn't matter.
    std::vector<Vs::CloudErrorState> states;
    bool forListings = false; ///< An answer that only a PROPFIND could have.
    bool isLong = false;      ///< Whatever is read anywhere is read by the code that reads listings.

    bool isStall() const { return std::string(name).find("stall") != std::string::npos; }
};

const std::vector<FaultCase>& faults();

/// Disturbs the request of that number, counted from now on, and no other. Only a stall gets a short timeout:
/// on a busy machine everything else is slow as well. `endDisturbance` lets all pass again.
void disturbOnce(TestSupport::FaultProxy& proxy, Vs::Cloud::Drive& drive, int number, const FaultCase& one);
void endDisturbance(TestSupport::FaultProxy& proxy, Vs::Cloud::Drive& drive);

/// Checks that an operation with that fault succeeded, or ended with one allowed state and a one-line text
/// without the secret.
void expectClear(const Vs::Cloud::DriveResult& result, const FaultCase& one, const std::string& secret);
