/*
 * The provider record that the settings-menu host receives from this plug-in, and the two
 * exported entry points that create and release it.
 *
 * The host reads the record by fixed positions: slot k lies at byte k * sizeof(void*). Only the
 * nine slots named below are filled; every other slot is a null pointer, which tells the host
 * that the plug-in does not offer that operation. The layout is frozen by the assertions at the
 * end of this file (51 slots, 204 bytes on a 32-bit television).
 *
 * Threading: the host calls every slot on its own thread, one call at a time. The plug-in starts
 * no thread and takes no lock.
 *
 * Memory: the record belongs to the plug-in (calloc'ed by create_provider, freed by
 * delete_provider). Strings returned through the `char** out` arguments of getValueString,
 * getTitle and getDescription are heap copies that the host owns from then on and releases
 * through freeString (or free). getValueText writes into a buffer that the host provides.
 *
 * Arguments named itemId or key must not be null; the plug-in does not test them.
 *
 * This header is plain C so that a host written in C can include it unchanged.
 */
#ifndef ORVO_MENU_ITEM_DATA_PROVIDER_H
#define ORVO_MENU_ITEM_DATA_PROVIDER_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Slot 0. Called when the user changes a toggle; key is the item identifier, which is also the
 * integer setting's key. Returns 0 when the setting was written, 1 on any failure. */
typedef int (*MenuItemDataProviderSetIntValue)(const char* key, int value);

/* Slot 8. Reads the integer setting `key` into *value. Returns 0 on success, 1 on any failure
 * (*value then keeps what the host put there). */
typedef int (*MenuItemDataProviderGetIntValue)(const char* key, int* value);

/* Slot 11. The current value text of a value item (only the model-search item has one).
 * On success *out receives a string the host owns. For other items *out is not written.
 * Returns 0 when *out is non-null afterwards, -1 otherwise (also for a null out). */
typedef int (*MenuItemDataProviderGetValueString)(const char* itemId, char** out);

/* Slot 12. Releases a string returned by this plug-in. Returns 1 for a null pointer, else frees
 * it and returns 0. */
typedef int (*MenuItemDataProviderFreeString)(void* string);

/* Slot 13. The item's translated title, as a string the host owns. Returns 0 on success, -1 for
 * a null out or when the copy fails. For an identifier outside this branch *out is left as the
 * host passed it and the result is 0 when *out is non-null, -1 when it is null. */
typedef int (*MenuItemDataProviderGetTitle)(const char* itemId, char** out);

/* Slot 14. The item's description: help text followed by the current and newest software
 * versions, as a string the host owns; after the Info key, the branch itself shows the detailed
 * version block instead. Every successful call consumes a pending Info key. Returns 0 on
 * success, -1 for a null out or when the text cannot be produced. */
typedef int (*MenuItemDataProviderGetDescription)(const char* itemId, char** out);

/* The size of the buffer that the host passes to getValueText. */
#define MENU_ITEM_DATA_PROVIDER_VALUE_TEXT_SIZE 255

/* Slot 38. Writes the message id of a toggle's current state ("SID_ON", "SID_OFF") into the
 * host's buffer *out, which must hold at least MENU_ITEM_DATA_PROVIDER_VALUE_TEXT_SIZE bytes; the
 * host translates it. Returns 1 when
 * written; -1 for other items, an unreadable setting, a value other than 0 and 1 or a null
 * buffer, in which case the buffer is untouched. */
typedef int (*MenuItemDataProviderGetValueText)(const char* itemId, char** out);

/* Slot 44. Ownership properties ("provider/owner", "provider/main-component",
 * "provider/sub-component"). A known key stores a string the host owns in *out; an unknown key
 * leaves *out untouched (as does a null out). Always returns 0. */
typedef int (*MenuItemDataProviderGetProviderProperty)(const char* key, char** out);

/* Slot 45. Key notification. "XF86Info" makes the next description of the branch show the
 * detailed version block; every other key, and a null name, is ignored. */
typedef void (*MenuItemDataProviderOnKeyEvent)(const char* keyName);

typedef struct MenuItemDataProvider {
    MenuItemDataProviderSetIntValue setIntValue;                 /* slot 0 */
    void* reserved1To7[7];                                       /* slots 1-7 */
    MenuItemDataProviderGetIntValue getIntValue;                 /* slot 8 */
    void* reserved9To10[2];                                      /* slots 9-10 */
    MenuItemDataProviderGetValueString getValueString;           /* slot 11 */
    MenuItemDataProviderFreeString freeString;                   /* slot 12 */
    MenuItemDataProviderGetTitle getTitle;                       /* slot 13 */
    MenuItemDataProviderGetDescription getDescription;           /* slot 14 */
    void* reserved15To37[23];                                    /* slots 15-37 */
    MenuItemDataProviderGetValueText getValueText;               /* slot 38 */
    void* reserved39To43[5];                                     /* slots 39-43 */
    MenuItemDataProviderGetProviderProperty getProviderProperty; /* slot 44 */
    MenuItemDataProviderOnKeyEvent onKeyEvent;                   /* slot 45 */
    void* reserved46To50[5];                                     /* slots 46-50 */
} MenuItemDataProvider;

#define MENU_ITEM_DATA_PROVIDER_SLOTS 51

#ifdef __cplusplus
#define MENU_ITEM_DATA_PROVIDER_ASSERT(condition, message) static_assert(condition, message)
#else
#define MENU_ITEM_DATA_PROVIDER_ASSERT(condition, message) _Static_assert(condition, message)
#endif

#define MENU_ITEM_DATA_PROVIDER_ASSERT_SLOT(member, index)                                            \
    MENU_ITEM_DATA_PROVIDER_ASSERT(offsetof(MenuItemDataProvider, member) == (index) * sizeof(void*), \
                                   #member " must sit in slot " #index)

MENU_ITEM_DATA_PROVIDER_ASSERT_SLOT(setIntValue, 0);
MENU_ITEM_DATA_PROVIDER_ASSERT_SLOT(getIntValue, 8);
MENU_ITEM_DATA_PROVIDER_ASSERT_SLOT(getValueString, 11);
MENU_ITEM_DATA_PROVIDER_ASSERT_SLOT(freeString, 12);
MENU_ITEM_DATA_PROVIDER_ASSERT_SLOT(getTitle, 13);
MENU_ITEM_DATA_PROVIDER_ASSERT_SLOT(getDescription, 14);
MENU_ITEM_DATA_PROVIDER_ASSERT_SLOT(getValueText, 38);
MENU_ITEM_DATA_PROVIDER_ASSERT_SLOT(getProviderProperty, 44);
MENU_ITEM_DATA_PROVIDER_ASSERT_SLOT(onKeyEvent, 45);
MENU_ITEM_DATA_PROVIDER_ASSERT(sizeof(MenuItemDataProvider) == MENU_ITEM_DATA_PROVIDER_SLOTS * sizeof(void*),
                               "the record is 51 pointer-sized slots");
MENU_ITEM_DATA_PROVIDER_ASSERT(sizeof(void*) != 4 || sizeof(MenuItemDataProvider) == 204,
                               "the 32-bit record is 204 bytes");

#undef MENU_ITEM_DATA_PROVIDER_ASSERT_SLOT
#undef MENU_ITEM_DATA_PROVIDER_ASSERT

/* Allocates a zero-filled record, binds the text domain "Tizen_Orvo" to its catalogue and fills
 * the nine slots. Returns 0 with the record in *out, or -1 when allocation fails (*out is then
 * untouched). out must not be null. Each call returns a fresh record. */
__attribute__((visibility("default"))) int create_provider(MenuItemDataProvider** out);

/* Frees *provider when it is non-null and returns 0; returns 1 for a null provider. *provider is
 * not reset: the host must not use it again. Strings the host still holds stay the host's. */
__attribute__((visibility("default"))) int delete_provider(MenuItemDataProvider** provider);

#ifdef __cplusplus
}
#endif

#endif
