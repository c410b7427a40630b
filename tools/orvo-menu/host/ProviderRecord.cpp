#include "ProviderRecord.h"

namespace Orvo {
namespace Tools {
namespace MenuHost {

const char* slotName(Slot slot) {
    switch (slot) {
    case Slot::SetIntValue:
        return "setIntValue";
    case Slot::GetIntValue:
        return "getIntValue";
    case Slot::GetValueString:
        return "getValueString";
    case Slot::FreeString:
        return "freeString";
    case Slot::GetTitle:
        return "getTitle";
    case Slot::GetDescription:
        return "getDescription";
    case Slot::GetValueText:
        return "getValueText";
    case Slot::GetProviderProperty:
        return "getProviderProperty";
    case Slot::OnKeyEvent:
        return "onKeyEvent";
    }
    return "?";
}

bool isKnownSlot(std::size_t index) {
    for (Slot slot : kKnownSlots) {
        if (static_cast<std::size_t>(slot) == index) return true;
    }
    return false;
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
