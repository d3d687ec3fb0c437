# Makes both preference files, in the folder `preferences`, as a first run of TIFFGEN makes them.
file(REMOVE_RECURSE preferences)
file(MAKE_DIRECTORY preferences)
file(CREATE_LINK ${TIFFGEN} preferences/run SYMBOLIC)
execute_process(COMMAND ./run -ptiffgen.prf WORKING_DIRECTORY preferences
                OUTPUT_VARIABLE said RESULT_VARIABLE status)
if(NOT status EQUAL 255) # that of the usage text
    message(FATAL_ERROR "The program ended with ${status}: ${said}")
endif()
file(REMOVE preferences/run)
