# What every target of this project is compiled with.
add_library(tessmar_compiler INTERFACE)
target_compile_options(tessmar_compiler INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
target_compile_definitions(tessmar_compiler INTERFACE QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_CAST_FROM_BYTEARRAY)
if(TESSMAR_SANITIZE)
  target_compile_options(tessmar_compiler INTERFACE -fsanitize=${TESSMAR_SANITIZE} -fno-omit-frame-pointer
                                                    -fno-sanitize-recover=all
                                                    # Wrong about std::vector in instrumented code.
                                                    $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>)
  target_link_options(tessmar_compiler INTERFACE -fsanitize=${TESSMAR_SANITIZE})
endif()
if(TESSMAR_COVERAGE)
  # Of what is counted alone: the core. Threads count into the same place, which is wrong now and then, and
  # once below nothing, unless each count is one step.
  target_compile_options(tessmar_compiler INTERFACE
                         "$<$<BOOL:$<TARGET_PROPERTY:TESSMAR_COUNTED>>:--coverage;-fprofile-update=atomic>")
  target_link_options(tessmar_compiler INTERFACE --coverage)
endif()

# tessmar_pch(target header...): precompiled headers, where they are wanted.
function(tessmar_pch target)
  if(TESSMAR_PCH)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()
