# Settings every project target shares. Third-party code is not held to our warning level.
function(orvo_target_defaults target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
endfunction()

# Sanitizer presets pass ORVO_SANITIZERS (for example "address,undefined").
set(ORVO_SANITIZERS "" CACHE STRING "Comma-separated -fsanitize= list applied to every target")
if(ORVO_SANITIZERS)
  add_compile_options(-fsanitize=${ORVO_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ORVO_SANITIZERS})
endif()
