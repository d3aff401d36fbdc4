# Flags that everything in the project is built with.
add_compile_options(-Wall -Wextra -Wshadow -Wvla)
# Warnings that follow the flow of instrumented code are often wrong, so that they stop no build.
if(NOT DEFINED CMAKE_COMPILE_WARNING_AS_ERROR AND NOT ZETAC_SANITIZE)
  set(CMAKE_COMPILE_WARNING_AS_ERROR ON)
endif()

set(ZETAC_OPTIMIZATION -O3 CACHE STRING "How the library itself is optimised, without sanitizers")

# One arithmetic for every level and word size: no contraction, no x87 excess precision.
add_compile_options(-ffp-contract=off)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_compile_options(-msse2 -mfpmath=sse -mstackrealign)
  add_compile_definitions(_FILE_OFFSET_BITS=64)  # files beyond 2 GiB
endif()

# "fuzzer" in ZETAC_SANITIZE means libFuzzer (clang only): all code is instrumented for coverage,
# and zetac_add_fuzzer links the fuzzer's own main into the fuzz targets alone.
string(REGEX REPLACE "(^|,)fuzzer(,|$)" "\\1fuzzer-no-link\\2" sanitizers "${ZETAC_SANITIZE}")
if(sanitizers)
  add_compile_options(-fsanitize=${sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${sanitizers})
endif()

# What the code of the library itself is built with. No frame may grow beyond 16 KiB, so that the
# library runs on the small stacks of audio threads; other builds than the product's are exempt.
function(zetac_library_options target)
  set_target_properties(${target} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_compile_options(${target} PRIVATE -fno-exceptions -fno-rtti -fno-threadsafe-statics)
  if(NOT ZETAC_SANITIZE)
    target_compile_options(${target} PRIVATE ${ZETAC_OPTIMIZATION}
      $<$<STREQUAL:${ZETAC_OPTIMIZATION},-O3>:-Wframe-larger-than=16384>)
  endif()
endfunction()

# A shared library that exports what its version script says and needs nothing but what it names.
function(zetac_limit_exports target map)
  set_target_properties(${target} PROPERTIES LINK_DEPENDS ${map})
  target_link_options(${target} PRIVATE
    -Wl,--as-needed -Wl,-z,text -Wl,--version-script=${map})
  if(NOT ZETAC_SANITIZE)  # the sanitizers' runtime is found in the program, not by the library
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()

# Kernels are compiled for every instruction-set level, which is most of the time of a build.
option(ZETAC_FEW_LEVELS "Compile kernels for the baseline and AVX2 only" OFF)
if(ZETAC_FEW_LEVELS)
  add_compile_definitions(ZETAC_FEW_LEVELS)
endif()
