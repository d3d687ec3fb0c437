# Part of installing: makes and installs the files that hold absolute paths below the prefix, which
# `cmake --install --prefix` may have changed. Files below DESTDIR hold the paths without it.

get_filename_component(prefix "${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
get_filename_component(VELMORANT_BINDIR "${bindir}" ABSOLUTE BASE_DIR "${prefix}")
get_filename_component(VELMORANT_DATADIR "${datadir}" ABSOLUTE BASE_DIR "${prefix}")
set(palette "${VELMORANT_DATADIR}/palettes/rainbow.plt")

# A line of a preference file is read up to 253 characters, and ends a text at a quote; the shell ends
# one at an apostrophe.
string(LENGTH "${palette}" length)
if(length GREATER 220 OR palette MATCHES "[\"']")
    message(FATAL_ERROR "Paths like this don't fit a preference file: ${palette}")
endif()

configure_file("${source}/companions/tiffgen-run.in" "${build}/tiffgen-run" @ONLY)
file(INSTALL "${build}/tiffgen-run" DESTINATION "${VELMORANT_BINDIR}" TYPE PROGRAM)

file(READ "${build}/preferences/tiffgen.prf" preferences)
string(REGEX REPLACE "\"[^\"]*/rainbow.plt\"" "\"${palette}\"" preferences "${preferences}")
file(WRITE "${build}/tiffgen.prf" "${preferences}")
file(INSTALL "${build}/tiffgen.prf" "${build}/preferences/GLOBAL.prf"
     DESTINATION "${VELMORANT_DATADIR}/preferences")
