# Runs "qvox order --json" on FILE, then on what it wrote, and checks that the second pass gives
# the first pass's text: JSON -> record -> property object -> record -> JSON is stable.
execute_process(COMMAND ${QVOX} order --json ${FILE} RESULT_VARIABLE code OUTPUT_VARIABLE first
                ERROR_VARIABLE err)
if(NOT code STREQUAL "0")
    message(FATAL_ERROR "qvox order --json ${FILE} failed (${code}): ${err}")
endif()
file(WRITE ${WORK} "${first}")
execute_process(COMMAND ${QVOX} order --json ${WORK} RESULT_VARIABLE code OUTPUT_VARIABLE second
                ERROR_VARIABLE err)
if(NOT code STREQUAL "0" OR NOT first STREQUAL second)
    message(FATAL_ERROR "the exchange of ${FILE} does not come back the same:\n${first}\n---\n${second}${err}")
endif()
