# Installs what was built afresh into PREFIX.
file(REMOVE_RECURSE ${PREFIX})
unset(ENV{DESTDIR})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX} --config ${CONFIG}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
