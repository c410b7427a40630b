#pragma once
// What the system-information keys that the plug-in and the update application read mean on the
// television, for the tools that show a device's facts to a person.

namespace Orvo {
namespace Tools {

// A short meaning ("software version"), or an empty text for a key this product does not read.
const char* systemInfoKeyMeaning(int key);

} // namespace Tools
} // namespace Orvo
