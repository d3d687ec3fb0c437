# velmorant_target(TARGET): language, arithmetic and warnings, the same for every target of the house.

if(CMAKE_SOURCE_DIR STREQUAL CMAKE_BINARY_DIR)
    message(FATAL_ERROR "Build in a folder of its own, as the presets do")
endif()

function(velmorant_target target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
    # Pictures are the same from every compiler: no multiplication is fused with an addition.
    target_compile_options(${target} PRIVATE -ffp-contract=off)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wdouble-promotion -Wformat=2
        -Wshadow -Wold-style-cast -Wcast-qual -Wcast-align -Wundef -Wnon-virtual-dtor
        -Woverloaded-virtual -Wimplicit-fallthrough -Wmissing-declarations
        $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wlogical-op>
        $<$<BOOL:${VELMORANT_WERROR}>:-Werror>)
    if(VELMORANT_SANITIZE)
        # float-cast-overflow is not part of "undefined" everywhere.
        set(sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all)
        target_compile_options(${target} PRIVATE ${sanitizers} -fno-omit-frame-pointer)
        target_link_options(${target} PUBLIC ${sanitizers})
    endif()
endfunction()
