# Compiles de_DE.UTF-8 into OUT (a LOCPATH folder) from the locale sources of the machine.
find_program(LOCALEDEF localedef REQUIRED)
file(MAKE_DIRECTORY ${OUT})
execute_process(COMMAND ${LOCALEDEF} -i de_DE -f UTF-8 ${OUT}/de_DE.UTF-8 RESULT_VARIABLE code)
if(NOT code EQUAL 0)
    message(FATAL_ERROR "localedef failed (${code}); scripts/setup installs the locale sources")
endif()
