# Runs qvox with the arguments in ARGS (separated by "|") and checks its exit code (CODE), that
# its standard output matches the regular expression MATCH and its standard error ERROR_MATCH
# (each only when given).
string(REPLACE "|" ";" arguments "${ARGS}")
execute_process(COMMAND ${QVOX} ${arguments} RESULT_VARIABLE code OUTPUT_VARIABLE out
                ERROR_VARIABLE err)
if(NOT code STREQUAL "${CODE}")
    message(FATAL_ERROR "expected exit code ${CODE} for '${ARGS}', got '${code}'\n${out}${err}")
endif()
if(DEFINED MATCH AND NOT out MATCHES "${MATCH}")
    message(FATAL_ERROR "output of '${ARGS}' does not match '${MATCH}':\n${out}")
endif()
if(DEFINED ERROR_MATCH AND NOT err MATCHES "${ERROR_MATCH}")
    message(FATAL_ERROR "error output of '${ARGS}' does not match '${ERROR_MATCH}':\n${err}")
endif()
