# exported_names.h: the functions of the public header that return a status, for the contract test.
set(header ${PROJECT_SOURCE_DIR}/include/zetac.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})

file(READ ${header} text)
string(REGEX MATCHALL "ZETAC_API[ \n]+ZetStatus[ \n]+zets[A-Za-z0-9_]+" declarations "${text}")
list(TRANSFORM declarations REPLACE ".*[ \n](zets[A-Za-z0-9_]+)" "    \"\\1\",\n")
if(NOT declarations)
  message(FATAL_ERROR "No exported functions found in ${header}")
endif()
string(JOIN "" names ${declarations})
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/generated/exported_names.h CONTENT
  "#pragma once\n\ninline constexpr const char* kExportedNames[] = {\n@names@};\n" @ONLY)
