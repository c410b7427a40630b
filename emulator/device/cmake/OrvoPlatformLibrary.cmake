# orvo_platform_library(<target> ALIAS <alias> PACKAGE <pkg-config name> DESCRIPTION <text>
#                       SOURCES <files...> HEADERS <files under include/...>
#                       [INCLUDE_SUBDIR <dir under include/>] [OUTPUT_NAME <name>]
#                       [VERSION <x.y.z>] [SOVERSION <n>] [PC_VERSION <version>])
# A substitute platform library laid out as the real one: its file name and SONAME
# (lib<OUTPUT_NAME>.so.<SOVERSION>, default lib<target>.so.0), only the API exported (hidden
# visibility plus the version script <dir>/exports.map), its headers in the real include
# directory and a pkg-config file of the real package's name, version and Cflags. The build tree
# mirrors the install tree (lib/, include/, lib/pkgconfig/), so one relocatable .pc file serves both.
function(orvo_platform_library target)
  cmake_parse_arguments(ARG ""
    "ALIAS;PACKAGE;DESCRIPTION;INCLUDE_SUBDIR;OUTPUT_NAME;VERSION;SOVERSION;PC_VERSION" "SOURCES;HEADERS" ${ARGN})
  set(exports ${CMAKE_CURRENT_SOURCE_DIR}/exports.map)
  if(NOT ARG_OUTPUT_NAME)
    set(ARG_OUTPUT_NAME ${target})
  endif()
  if(NOT ARG_SOVERSION)
    set(ARG_SOVERSION 0)
  endif()
  if(NOT ARG_PC_VERSION)
    set(ARG_PC_VERSION ${PROJECT_VERSION})
  endif()
  set(includeDir ${CMAKE_INSTALL_INCLUDEDIR})
  if(ARG_INCLUDE_SUBDIR)
    string(APPEND includeDir /${ARG_INCLUDE_SUBDIR})
  endif()

  add_library(${target} SHARED ${ARG_SOURCES})
  add_library(${ARG_ALIAS} ALIAS ${target})
  orvo_target_defaults(${target})
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${ARG_OUTPUT_NAME}
    SOVERSION ${ARG_SOVERSION}
    C_VISIBILITY_PRESET hidden
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    LINK_DEPENDS ${exports})
  if(ARG_VERSION)
    set_target_properties(${target} PROPERTIES VERSION ${ARG_VERSION})
  endif()
  target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}")
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${includeDir}>)
  target_link_libraries(${target} PRIVATE Orvo::DeviceState)
  install(TARGETS ${target} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

  foreach(header IN LISTS ARG_HEADERS)
    get_filename_component(subdir ${header} DIRECTORY)
    configure_file(include/${header} ${PROJECT_BINARY_DIR}/${includeDir}/${header} COPYONLY)
    install(FILES include/${header} DESTINATION ${includeDir}/${subdir})
  endforeach()

  file(RELATIVE_PATH PC_PREFIX_FROM_PCFILEDIR "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
  string(REGEX REPLACE "/$" "" PC_PREFIX_FROM_PCFILEDIR "${PC_PREFIX_FROM_PCFILEDIR}")
  set(PC_NAME ${ARG_PACKAGE})
  set(PC_DESCRIPTION ${ARG_DESCRIPTION})
  set(PC_VERSION ${ARG_PC_VERSION})
  set(PC_LIBRARY ${ARG_OUTPUT_NAME})
  set(PC_INCLUDE_SUBDIR "")
  if(ARG_INCLUDE_SUBDIR)
    set(PC_INCLUDE_SUBDIR /${ARG_INCLUDE_SUBDIR})
  endif()
  set(pc ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR}/pkgconfig/${ARG_PACKAGE}.pc)
  configure_file(${ORVO_PLATFORM_PC_TEMPLATE} ${pc} @ONLY)
  install(FILES ${pc} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
