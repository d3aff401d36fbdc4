# exported_names.h: the functions of the public header that return a status, and the statuses, for
# the contract test.
set(header ${PROJECT_SOURCE_DIR}/include/zetac.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})

file(READ ${header} text)
string(REGEX MATCHALL "ZETAC_API[ \n]+ZetStatus[ \n]+zets[A-Za-z0-9_]+" declarations "${text}")
list(TRANSFORM declarations REPLACE ".*[ \n](zets[A-Za-z0-9_]+)" "    \"\\1\",\n")
if(NOT declarations)
  message(FATAL_ERROR "No exported functions found in ${header}")
endif()
string(JOIN "" names ${declarations})
list(TRANSFORM declarations REPLACE "    \"(.*)\",\n" "    X(\\1) \\\\\n")
string(JOIN "" calls ${declarations})
string(REGEX MATCHALL "zetSts[A-Za-z0-9]+ +=" statuses "${text}")
list(TRANSFORM statuses REPLACE "(zetSts[A-Za-z0-9]+).*" "    {\"\\1\", \\1},\n")
string(JOIN "" statuses ${statuses})
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/generated/exported_names.h CONTENT
  "#pragma once

#include <zetac.h>

#include <string_view>

inline constexpr const char* kExportedNames[] = {
@names@};

#define ZETAC_FOR_EACH_FUNCTION(X) \\
@calls@

struct NamedStatus {
    std::string_view name;
    ZetStatus status;
};
inline constexpr NamedStatus kStatuses[] = {
@statuses@};
" @ONLY)
