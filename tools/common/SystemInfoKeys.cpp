#include "SystemInfoKeys.h"

#include <map>

namespace Orvo {
namespace Tools {

const char* systemInfoKeyMeaning(int key) {
    static const std::map<int, const char*> meanings = {{0, "model line"},
                                                        {8, "build date"},
                                                        {77, "product code"},
                                                        {90, "localset"},
                                                        {91, "chipset"},
                                                        {128, "software version"},
                                                        {133, "sub-microcontroller version"},
                                                        {301, "partition table"},
                                                        {564, "platform"},
                                                        {620, "China model line"},
                                                        {740, "PANE family"},
                                                        {869, "factory: fast USB booting"},
                                                        {890, "factory: OTA support"},
                                                        {902, "factory: OTN"},
                                                        {903, "factory: server type"},
                                                        {904, "factory: zone"},
                                                        {922, "factory: short OTA duration"},
                                                        {923, "factory: fail test"},
                                                        {10130, "factory: hotel OTN"}};
    const auto meaning = meanings.find(key);
    return meaning == meanings.end() ? "" : meaning->second;
}

} // namespace Tools
} // namespace Orvo
