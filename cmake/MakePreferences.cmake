# Makes both preference files, in the folder `preferences`, as a first run of TIFFGEN makes them, but for the
# palette, which is named without its folder: tiffgen-run takes it for an installed one.
file(REMOVE_RECURSE preferences)
file(MAKE_DIRECTORY preferences)
file(CREATE_LINK ${TIFFGEN} preferences/run SYMBOLIC)
execute_process(COMMAND ./run -ptiffgen.prf WORKING_DIRECTORY preferences
                OUTPUT_VARIABLE said RESULT_VARIABLE status)
if(NOT status EQUAL 255) # that of the usage text
    message(FATAL_ERROR "The program ended with ${status}: ${said}")
endif()
file(REMOVE preferences/run)
file(READ preferences/tiffgen.prf text)
string(REGEX REPLACE "(Color Palette File:= )[^\n]*" "\\1\"rainbow.plt\"" text "${text}")
file(WRITE preferences/tiffgen.prf "${text}")
