#pragma once
// The host's own view of the provider record: 51 pointer-sized slots read by position. A null
// slot is an operation the plug-in does not offer. Only the positions below are known to the
// host; every other slot is expected to stay null.

#include <cstddef>

namespace Orvo {
namespace Tools {
namespace MenuHost {

constexpr std::size_t kSlotCount = 51;

enum class Slot : std::size_t {
    SetIntValue = 0,
    GetIntValue = 8,
    GetValueString = 11,
    FreeString = 12,
    GetTitle = 13,
    GetDescription = 14,
    GetValueText = 38,
    GetProviderProperty = 44,
    OnKeyEvent = 45,
};

// Every slot the host knows, in record order.
constexpr Slot kKnownSlots[] = {
    Slot::SetIntValue,    Slot::GetIntValue,  Slot::GetValueString,      Slot::FreeString, Slot::GetTitle,
    Slot::GetDescription, Slot::GetValueText, Slot::GetProviderProperty, Slot::OnKeyEvent};

using SetIntValueFn = int (*)(const char* key, int value);
using GetIntValueFn = int (*)(const char* key, int* value);
using StringOutFn = int (*)(const char* id, char** out); // getValueString, getTitle, ...
using FreeStringFn = int (*)(void* p);
using OnKeyEventFn = void (*)(const char* keyName);

using AnySlotFn = void (*)();

// The record as the plug-in hands it over; opaque to the host except through its slots.
struct ProviderRecord {
    AnySlotFn slots[kSlotCount];
};

using CreateProviderFn = int (*)(ProviderRecord** out);
using DeleteProviderFn = int (*)(ProviderRecord** provider);

const char* slotName(Slot slot);
bool isKnownSlot(std::size_t index);

// The callback in a slot as its declared type; null when not offered.
template <typename Fn>
Fn slotFunction(const ProviderRecord& record, Slot slot) {
    return reinterpret_cast<Fn>(record.slots[static_cast<std::size_t>(slot)]);
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
