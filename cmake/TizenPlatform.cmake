# The real television platform. The plug-in links the same targets as against the emulated
# device; only where they come from differs: every platform library through its pkg-config file.
find_package(PkgConfig REQUIRED)
pkg_check_modules(VCONF REQUIRED IMPORTED_TARGET vconf)
pkg_check_modules(DLOG REQUIRED IMPORTED_TARGET dlog)
pkg_check_modules(CAPI_SYSTEM_INFO REQUIRED IMPORTED_TARGET capi-system-info)
pkg_check_modules(TZPLATFORM_CONFIG REQUIRED IMPORTED_TARGET libtzplatform-config)
pkg_check_modules(PRODUCTION_CONFIG REQUIRED IMPORTED_TARGET OrvoProductionConfig)

add_library(Platform::vconf ALIAS PkgConfig::VCONF)
add_library(Platform::dlog ALIAS PkgConfig::DLOG)
add_library(Platform::system_info ALIAS PkgConfig::CAPI_SYSTEM_INFO)
add_library(Platform::tzplatform_config ALIAS PkgConfig::TZPLATFORM_CONFIG)
add_library(Platform::production_config ALIAS PkgConfig::PRODUCTION_CONFIG)
