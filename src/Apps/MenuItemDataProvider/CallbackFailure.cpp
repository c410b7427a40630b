#include "Apps/MenuItemDataProvider/CallbackFailure.h"

#include "Common/Logging/Logging.h"

#include <boost/exception/diagnostic_information.hpp>

namespace Orvo {
namespace Apps {
namespace MenuProvider {

void logCallbackFailure(const char* callback) noexcept {
    try {
        ORVO_LOG(ERR, "Menu callback %s failed: %s", callback,
                 boost::current_exception_diagnostic_information().c_str());
    } catch (...) {
        // Out of memory while describing the failure: the result code alone must do.
    }
}

} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo
