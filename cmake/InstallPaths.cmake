# Part of installing, its first: makes and installs the files that hold absolute paths below the prefix,
# which `cmake --install --prefix` may have changed. Files below DESTDIR hold the paths without it.

get_filename_component(prefix "${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
get_filename_component(VELMORANT_BINDIR "${bindir}" ABSOLUTE BASE_DIR "${prefix}")
get_filename_component(VELMORANT_DATADIR "${datadir}" ABSOLUTE BASE_DIR "${prefix}")
get_filename_component(completions "${completiondir}" ABSOLUTE BASE_DIR "${prefix}")
set(palette "${VELMORANT_DATADIR}/palettes/rainbow.plt")

# A preference file holds texts of 220 characters and some, between quotes; the shell's texts end at an
# apostrophe.
string(LENGTH "${palette}" length)
if(length GREATER 220)
    message(FATAL_ERROR "A path of at most 220 characters fits a preference file, not of ${length}: ${palette}")
elseif(palette MATCHES "[\"'\\]")
    message(FATAL_ERROR "Quotes and backslashes don't fit a preference file: ${palette}")
endif()

configure_file("${source}/companions/tiffgen-run.in" "${build}/tiffgen-run" @ONLY)
file(INSTALL "${build}/tiffgen-run" DESTINATION "${VELMORANT_BINDIR}" TYPE PROGRAM)

configure_file("${source}/companions/completion.bash.in" "${build}/completion.bash" @ONLY)
foreach(program tiffgen tiffgen-run tiffgen-check nifti-to-raw)
    file(INSTALL "${build}/completion.bash" DESTINATION "${completions}" RENAME ${program})
endforeach()

file(READ "${build}/preferences/tiffgen.prf" preferences)
string(REGEX REPLACE "\"[^\"]*/rainbow.plt\"" "\"${palette}\"" preferences "${preferences}")
file(WRITE "${build}/tiffgen.prf" "${preferences}")
file(INSTALL "${build}/tiffgen.prf" "${build}/preferences/GLOBAL.prf"
     DESTINATION "${VELMORANT_DATADIR}/preferences")
