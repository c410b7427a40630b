#pragma once
// The product layer's unguarded reads of the SW version (CTizenProductInfo); the guarded getters
// of IProductInfo are built on them.

#include <cstdint>
#include <string>

namespace Orvo {
namespace Platform {

// The full SW version, model-dash-version; throws SystemInfoAPIInternalProblemException.
std::string getSWVersionString();

// The SW version split at its last dash into the model and the version's two numbers.
void getParsedModelAndVersion(std::string& model, uint16_t& major, uint16_t& minor);

} // namespace Platform
} // namespace Orvo
