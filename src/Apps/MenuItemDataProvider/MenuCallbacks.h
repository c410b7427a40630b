#pragma once
// The callbacks that create_provider stores in the provider record. None of them lets an
// exception reach the host; see MenuItemDataProvider.h for results and ownership.

namespace Orvo {
namespace Apps {
namespace MenuProvider {

// Titles and descriptions of the branch's items (MenuTree.cpp).
int getTitle(const char* itemId, char** out) noexcept;
int getDescription(const char* itemId, char** out) noexcept;

// Settings, values, properties and keys (MenuValues.cpp).
int setIntValue(const char* key, int value) noexcept;
int getIntValue(const char* key, int* value) noexcept;
int getValueText(const char* itemId, char** out) noexcept;
int getValueString(const char* itemId, char** out) noexcept;
int getProviderProperty(const char* key, char** out) noexcept;
void onKeyEvent(const char* keyName) noexcept;

} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo
