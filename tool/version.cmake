# Writes a source file with the project's release and the commit that is built.
execute_process(COMMAND git -C ${SOURCE} rev-parse --show-toplevel
  OUTPUT_VARIABLE top OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
file(REAL_PATH ${SOURCE} source)
set(COMMIT "")
if(top STREQUAL source)
  execute_process(COMMAND git -C ${SOURCE} describe --always --dirty --abbrev=12 --exclude=*
    OUTPUT_VARIABLE COMMIT OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
configure_file(${SOURCE}/tool/version.cpp.in ${OUTPUT} @ONLY)
