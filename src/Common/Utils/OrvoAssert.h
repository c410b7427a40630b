#pragma once
// Assertions that hold in every build: a failure writes to the console and the log, then aborts.
// BOOST_ENABLE_ASSERT_HANDLER is defined for the whole product, so Boost's own assertions end in
// the same handlers (boost::assertion_failed and boost::assertion_failed_msg).

#include <boost/assert.hpp>

#define ORVO_ASSERT(expr) BOOST_ASSERT(expr)
#define ORVO_ASSERT_MSG(expr, msg) BOOST_ASSERT_MSG(expr, msg)
