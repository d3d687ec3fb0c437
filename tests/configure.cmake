# Configures SOURCE without its dependencies and with options off, and checks the messages and the manual pages.

# What this build was told is not what those are told, but for where libraries are.
unset(ENV{CMAKE_BUILD_TYPE})
if(PREFIX_PATH)
    string(REPLACE ";" ":" ENV{CMAKE_PREFIX_PATH} "${PREFIX_PATH}")
endif()

# RESULT: 0, or 1 for a failure whose output holds MESSAGE.
function(configure folder result message)
    file(REMOVE_RECURSE ${folder})
    execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${folder} -G ${GENERATOR} ${ARGN}
                            -DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM} -DCMAKE_CXX_COMPILER=${CXX}
                    OUTPUT_VARIABLE said ERROR_VARIABLE said RESULT_VARIABLE ended)
    if(NOT ended EQUAL result OR NOT said MATCHES "${message}")
        message(FATAL_ERROR "${ARGN} ended with ${ended} and without \"${message}\": ${said}")
    endif()
    set(said "${said}" PARENT_SCOPE)
endfunction()

# As on a machine that has none of the libraries.
set(bare -DCMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF -DCMAKE_FIND_USE_SYSTEM_ENVIRONMENT_PATH=OFF
         -DCMAKE_FIND_USE_CMAKE_ENVIRONMENT_PATH=OFF)
configure(configured 1 "lacks" ${bare} -DVELMORANT_STATIC=ON -DVELMORANT_BENCH=ON -DVELMORANT_FUZZ=ON)
set(lacking libtiff-dev:PROGRAMS libnifti2-dev:NIFTI zlib1g-dev:NIFTI libgtest-dev:TESTS
            libbenchmark-dev:BENCH pkg-config:STATIC)
if(NOT CXX MATCHES clang)
    list(APPEND lacking libclang-rt-14-dev:FUZZ)
endif()
foreach(package IN LISTS lacking)
    string(REPLACE ":" ", or configure with -DVELMORANT_" words ${package})
    if(NOT said MATCHES "${words}=OFF")
        message(FATAL_ERROR "Not named: ${words}=OFF in ${said}")
    endif()
endforeach()
configure(configured 0 "" ${bare} -DVELMORANT_PROGRAMS=OFF)
file(STRINGS configured/CMakeCache.txt type REGEX "^CMAKE_BUILD_TYPE:.*=Release$")
if(NOT type)
    message(FATAL_ERROR "A build is not optimised")
endif()
configure(configured 1 "image library is a static one" -DBUILD_SHARED_LIBS=ON)
configure("configured#" 1 "whose path has one of")

# A manual page says nothing of a program that is left out.
configure(configured 0 "" -DVELMORANT_NIFTI=OFF)
file(GLOB pages RELATIVE ${CMAKE_CURRENT_BINARY_DIR}/configured/man configured/man/*)
list(LENGTH pages count)
if(NOT count EQUAL 7)
    message(FATAL_ERROR "Not 7 pages: ${pages}")
endif()
foreach(page IN LISTS pages)
    file(READ configured/man/${page} text)
    string(TOLOWER "${page} ${text}" text)
    if(text MATCHES "nifti")
        message(FATAL_ERROR "NIfTI in ${page}")
    endif()
endforeach()
