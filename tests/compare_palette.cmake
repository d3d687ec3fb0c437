execute_process(COMMAND ${MAKE_PALETTE} rainbow made.plt COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files made.plt ${KEPT} COMMAND_ERROR_IS_FATAL ANY)
