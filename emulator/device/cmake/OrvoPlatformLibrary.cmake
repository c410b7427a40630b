# orvo_platform_library(<target> ALIAS <alias> PACKAGE <pkg-config name> DESCRIPTION <text>
#                       SOURCES <files...> HEADERS <paths under include/...>)
# A substitute platform library: the real library's name and SONAME, only the API exported
# (hidden visibility plus the version script <dir>/exports.map), its headers and a pkg-config file
# of the real package's name. The build tree mirrors the install tree (lib/, include/,
# lib/pkgconfig/), so one relocatable .pc file serves both.
function(orvo_platform_library target)
  cmake_parse_arguments(ARG "" "ALIAS;PACKAGE;DESCRIPTION" "SOURCES;HEADERS" ${ARGN})
  set(exports ${CMAKE_CURRENT_SOURCE_DIR}/exports.map)

  add_library(${target} SHARED ${ARG_SOURCES})
  add_library(${ARG_ALIAS} ALIAS ${target})
  orvo_target_defaults(${target})
  set_target_properties(${target} PROPERTIES
    SOVERSION 0
    C_VISIBILITY_PRESET hidden
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    LINK_DEPENDS ${exports})
  target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}")
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_link_libraries(${target} PRIVATE Orvo::DeviceState)
  install(TARGETS ${target} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

  foreach(header IN LISTS ARG_HEADERS)
    get_filename_component(subdir ${header} DIRECTORY)
    configure_file(include/${header} ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_INCLUDEDIR}/${header} COPYONLY)
    install(FILES include/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${subdir})
  endforeach()

  file(RELATIVE_PATH PC_PREFIX_FROM_PCFILEDIR "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
  string(REGEX REPLACE "/$" "" PC_PREFIX_FROM_PCFILEDIR "${PC_PREFIX_FROM_PCFILEDIR}")
  set(PC_NAME ${ARG_PACKAGE})
  set(PC_DESCRIPTION ${ARG_DESCRIPTION})
  set(PC_LIBRARY ${target})
  set(pc ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR}/pkgconfig/${ARG_PACKAGE}.pc)
  configure_file(${ORVO_PLATFORM_PC_TEMPLATE} ${pc} @ONLY)
  install(FILES ${pc} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
