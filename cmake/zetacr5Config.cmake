include(${CMAKE_CURRENT_LIST_DIR}/zetacr5Targets.cmake)
