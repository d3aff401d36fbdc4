set(ZETAC_FUZZ_SECONDS 5 CACHE STRING "How long the tests let libFuzzer search, for each target")
string(REGEX MATCH "(^|,)fuzzer(,|$)" ZETAC_LIBFUZZER "${ZETAC_SANITIZE}")

# A fuzz target: a source that defines LLVMFuzzerTestOneInput. Its test replays fuzz/corpus/<name>/;
# with libFuzzer a second test searches for new inputs and keeps what it finds in the build folder.
# The target links the library's own objects or, instead, the LIBRARY that is named.
function(zetac_add_fuzzer name)
  cmake_parse_arguments(arg "" "LIBRARY" "" ${ARGN})
  if(NOT arg_LIBRARY)
    set(arg_LIBRARY zetac_internal)
  endif()
  set(target fuzz_${name})
  set(corpus ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name})
  add_executable(${target} ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${target} PRIVATE ${arg_LIBRARY})
  if(NOT ZETAC_LIBFUZZER)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/fuzz/replay_main.cpp)
    add_test(NAME fuzz.${name}.replay COMMAND ${target} ${corpus})
    return()
  endif()
  target_link_options(${target} PRIVATE -fsanitize=fuzzer)
  set(found ${CMAKE_CURRENT_BINARY_DIR}/${name}-found)
  file(MAKE_DIRECTORY ${found})
  add_test(NAME fuzz.${name}.replay COMMAND ${target} -runs=0 ${corpus})
  add_test(NAME fuzz.${name}.search
    COMMAND ${target} -max_total_time=${ZETAC_FUZZ_SECONDS} -timeout=10
      -artifact_prefix=${found}/../${name}- ${found} ${corpus})
endfunction()
