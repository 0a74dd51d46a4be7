# Runs qvox with the arguments in ARGS (separated by "|") and checks that it refuses them the way
# a script can rely on: exit code CODE (2 unless given) and a message that starts with "qvox: ".
if(NOT DEFINED CODE)
    set(CODE 2)
endif()
set(ERROR_MATCH "^qvox: ")
include(${CMAKE_CURRENT_LIST_DIR}/ExpectExitCode.cmake)
