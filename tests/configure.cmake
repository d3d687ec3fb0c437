# What a configuration of SOURCE says where it lacks something, and makes of an option that is off.

# Sets `said`. RESULT: 0, or 1 where it fails.
function(configure result)
    file(REMOVE_RECURSE configured)
    execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B configured -G ${GENERATOR} ${ARGN}
                            -DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM} -DCMAKE_CXX_COMPILER=${CXX}
                    OUTPUT_VARIABLE said ERROR_VARIABLE said RESULT_VARIABLE ended)
    if(NOT ended EQUAL result)
        message(FATAL_ERROR "${ARGN} ended with ${ended}: ${said}")
    endif()
    set(said "${said}" PARENT_SCOPE)
endfunction()

# As on a machine that has none of the libraries.
set(bare -DCMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF -DCMAKE_FIND_USE_SYSTEM_ENVIRONMENT_PATH=OFF
         -DCMAKE_FIND_USE_CMAKE_ENVIRONMENT_PATH=OFF)
configure(1 ${bare} -DVELMORANT_STATIC=ON -DVELMORANT_BENCH=ON -DVELMORANT_FUZZ=ON)
foreach(package libtiff-dev:PROGRAMS libnifti2-dev:NIFTI zlib1g-dev:NIFTI libgtest-dev:TESTS
        libbenchmark-dev:BENCH pkg-config:STATIC)
    string(REPLACE ":" ", or configure with -DVELMORANT_" words ${package})
    if(NOT said MATCHES "install ${words}=OFF")
        message(FATAL_ERROR "Not named: ${words}=OFF in ${said}")
    endif()
endforeach()
configure(0 ${bare} -DVELMORANT_PROGRAMS=OFF)
file(STRINGS configured/CMakeCache.txt type REGEX "^CMAKE_BUILD_TYPE:.*=Release$")
if(NOT type)
    message(FATAL_ERROR "A build is not optimised")
endif()
configure(1 ${bare} -DBUILD_SHARED_LIBS=ON)

# A manual page says nothing of a program that is left out.
configure(0 -DVELMORANT_NIFTI=OFF)
file(GLOB pages configured/man/*)
list(LENGTH pages count)
foreach(page IN LISTS pages)
    file(READ ${page} text)
    string(TOLOWER "${page} ${text}" text)
    if(text MATCHES "nifti" OR NOT count EQUAL 7)
        message(FATAL_ERROR "${count} pages, and NIfTI in ${page}")
    endif()
endforeach()
