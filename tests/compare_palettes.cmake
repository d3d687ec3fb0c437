# The palettes that are kept are those that their definitions make.
file(MAKE_DIRECTORY made)
execute_process(COMMAND ${MAKE_PALETTES} made COMMAND_ERROR_IS_FATAL ANY)
file(GLOB names RELATIVE ${KEPT} ${KEPT}/*.plt)
file(GLOB made_names RELATIVE ${CMAKE_CURRENT_BINARY_DIR}/made made/*.plt)
if(NOT names STREQUAL made_names)
    message(FATAL_ERROR "kept: ${names}; made: ${made_names}")
endif()
foreach(name IN LISTS names)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files made/${name} ${KEPT}/${name}
                    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
