#pragma once
// The shared test utilities.

#include "orvo/testing/Process.h"
#include "orvo/testing/TemporaryDirectory.h"
#include "orvo/testing/TestDevice.h"
