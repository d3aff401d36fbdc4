include(CMakeFindDependencyMacro)
find_dependency(zetacr5 5.2 PATHS ${CMAKE_CURRENT_LIST_DIR}/../zetacr5)
include(${CMAKE_CURRENT_LIST_DIR}/zetacTargets.cmake)
