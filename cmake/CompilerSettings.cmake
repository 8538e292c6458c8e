# Settings of our own code; nothing of this reaches those who link the library.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(image_settings INTERFACE)
target_compile_options(image_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor
    # Results are defined bit for bit: no multiplication and addition is fused behind our back.
    -ffp-contract=off
    # The log names source files relative to the project.
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
target_compile_definitions(image_settings INTERFACE QT_NO_KEYWORDS)
if(LIBIMAGE_WERROR)
  target_compile_options(image_settings INTERFACE -Werror)
endif()

# Kernels carry their own options whatever the build type: GCC vectorises their loops only if a
# floating-point operation may be speculated. No flag here changes a result.
function(libimage_kernel_options target)
  target_compile_options(${target} PRIVATE -fno-trapping-math $<$<NOT:$<CONFIG:Debug>>:-O3>)
  if(LIBIMAGE_CLONES STREQUAL "v3")
    target_compile_options(${target} PRIVATE -march=x86-64-v3)
  endif()
  if(NOT LIBIMAGE_CLONES STREQUAL "auto")
    target_compile_definitions(${target} PRIVATE LX_NO_CLONES)
  endif()
endfunction()
