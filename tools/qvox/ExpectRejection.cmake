# Runs qvox with the arguments in ARGS (separated by "|") and checks that it refuses them the way
# a script can rely on: exit code CODE (2 unless given) and a message that starts with "qvox: ".
if(NOT DEFINED CODE)
    set(CODE 2)
endif()
string(REPLACE "|" ";" arguments "${ARGS}")
execute_process(COMMAND ${QVOX} ${arguments} RESULT_VARIABLE code OUTPUT_VARIABLE out
                ERROR_VARIABLE err)
if(NOT code STREQUAL "${CODE}")
    message(FATAL_ERROR "expected exit code ${CODE} for '${ARGS}', got '${code}'\n${out}${err}")
endif()
if(NOT err MATCHES "^qvox: ")
    message(FATAL_ERROR "expected a 'qvox: ' message for '${ARGS}', got:\n${err}")
endif()
