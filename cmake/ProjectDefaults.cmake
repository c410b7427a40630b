# Settings every project target shares. Third-party code is not held to our warning level.
option(ORVO_WERROR "Treat compiler warnings as errors (the developer presets turn it on)" OFF)
function(orvo_target_defaults target)
  target_compile_options(${target} PRIVATE -Wall -Wextra $<$<BOOL:${ORVO_WERROR}>:-Werror>)
endfunction()

# 64-bit file offsets and inode numbers on 32-bit targets too: without them readdir and stat fail
# with EOVERFLOW on large file systems.
add_compile_definitions(_FILE_OFFSET_BITS=64)

# Hardening as the platform's packages are built: stack protector, fortified libc calls (they need
# optimisation), full RELRO with immediate binding, position-independent executables and a
# non-executable stack.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported()
add_compile_options(-fstack-protector-strong)
add_link_options(LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)

# Sanitizer presets pass ORVO_SANITIZERS (for example "address,undefined").
set(ORVO_SANITIZERS "" CACHE STRING "Comma-separated -fsanitize= list applied to every target")
if(ORVO_SANITIZERS)
  add_compile_options(-fsanitize=${ORVO_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ORVO_SANITIZERS})
else()
  # The sanitizers replace the libc functions that _FORTIFY_SOURCE would check.
  set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
  add_compile_options($<${optimised}:-U_FORTIFY_SOURCE> $<${optimised}:-D_FORTIFY_SOURCE=2>)
endif()
