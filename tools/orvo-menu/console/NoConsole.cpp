// orvo-menu serve in a build without the web console (ORVO_BUILD_CONSOLE=OFF, as for the
// television's CPU): a clear refusal instead of a missing command.
#include "ConsoleServer.h"

#include <stdexcept>

namespace Orvo {
namespace Tools {
namespace Console {

int serveUntilInterrupted(const MenuHost::Provider&, const ConsoleConfig&, std::ostream&) {
    throw std::runtime_error("this orvo-menu was built without the web console (ORVO_BUILD_CONSOLE=OFF)");
}

} // namespace Console
} // namespace Tools
} // namespace Orvo
