# The real television platform. The plug-in links the same targets as against the emulated
# device; only where they come from differs.
find_package(PkgConfig REQUIRED)
pkg_check_modules(VCONF REQUIRED IMPORTED_TARGET vconf)
pkg_check_modules(DLOG REQUIRED IMPORTED_TARGET dlog)
pkg_check_modules(CAPI_SYSTEM_INFO REQUIRED IMPORTED_TARGET capi-system-info)
pkg_check_modules(TZPLATFORM_CONFIG REQUIRED IMPORTED_TARGET libtzplatform-config)
find_library(ORVO_PRODUCTION_CONFIG_LIBRARY NAMES OrvoProductionConfig REQUIRED)
find_path(ORVO_PRODUCTION_CONFIG_INCLUDE_DIR NAMES Orvo/Common/Debug/ProductionConfig.h REQUIRED)

add_library(Platform::vconf ALIAS PkgConfig::VCONF)
add_library(Platform::dlog ALIAS PkgConfig::DLOG)
add_library(Platform::system_info ALIAS PkgConfig::CAPI_SYSTEM_INFO)
add_library(Platform::tzplatform_config ALIAS PkgConfig::TZPLATFORM_CONFIG)
add_library(orvo_production_config_imported UNKNOWN IMPORTED)
set_target_properties(orvo_production_config_imported PROPERTIES
  IMPORTED_LOCATION ${ORVO_PRODUCTION_CONFIG_LIBRARY}
  INTERFACE_INCLUDE_DIRECTORIES ${ORVO_PRODUCTION_CONFIG_INCLUDE_DIR})
add_library(Platform::production_config ALIAS orvo_production_config_imported)
