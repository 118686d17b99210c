#pragma once

#include "Server/Network/Failure.h"
#include "Server/Network/Http.h"
#include "Server/Network/Json.h"
#include "Server/Network/Origin.h"
#include "Server/Skyvault/Drive.h"

namespace Vs::Cloud {

// This library's files use requests throughout.
using namespace Network;

} // namespace Vs::Cloud
