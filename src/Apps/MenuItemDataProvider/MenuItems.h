#pragma once
// Identifiers of the software-update branch's items, as the settings-menu host passes them. The
// two "db/" identifiers are also the keys of the integer settings behind the toggles.

namespace Orvo {
namespace Apps {
namespace MenuProvider {

constexpr const char* kBranchItem = "menu/support/softwareupdate";
constexpr const char* kUpdateNowItem = "menu/support/softwareupdate/updatenow";
constexpr const char* kSearchModelsItem = "menu/support/softwareupdate/searchmodels";
constexpr const char* kAutoUpdateItem = "db/menu/support/softwareupdate/autoupdate";
constexpr const char* kUseCellularItem = "db/menu/support/softwareupdate/use_cellular_int";
constexpr const char* kOsUpgradeItem = "menu/support/softwareupdate/osupgrade";

} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo
