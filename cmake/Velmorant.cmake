# velmorant_target(TARGET): language, arithmetic and warnings, the same for every target of the house.

# What distributions build their programs with, so that a fault ends a run instead of harming more:
# checked copies, container bounds, stack guards, and addresses that nobody can guess or overwrite.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)
if(NOT VELMORANT_STATIC) # whose programs are linked as such by an option of its own
    check_pie_supported()
endif()
check_cxx_compiler_flag(-fstack-clash-protection VELMORANT_HAS_STACK_CLASH_PROTECTION)
check_cxx_compiler_flag(-fcf-protection VELMORANT_HAS_CF_PROTECTION)
check_linker_flag(CXX -Wl,-z,relro,-z,now VELMORANT_HAS_RELRO)
if(NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
    # Checked copies need an optimised build.
    set(VELMORANT_FORTIFY -U_FORTIFY_SOURCE
        $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=2>)
endif()

function(velmorant_harden target)
    target_compile_options(${target} PRIVATE
        ${VELMORANT_FORTIFY} -D_GLIBCXX_ASSERTIONS -fstack-protector-strong
        $<$<BOOL:${VELMORANT_HAS_STACK_CLASH_PROTECTION}>:-fstack-clash-protection>
        $<$<BOOL:${VELMORANT_HAS_CF_PROTECTION}>:-fcf-protection>)
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_link_options(${target} PRIVATE
        $<$<BOOL:${VELMORANT_HAS_RELRO}>:-Wl,-z,relro,-z,now>)
endfunction()

function(velmorant_target target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    # Pictures are the same from every compiler: no multiplication is fused with an addition.
    # Nobody looks at the flags of floating-point exceptions, for which g++ would keep a branch.
    target_compile_options(${target} PRIVATE -ffp-contract=off -fno-trapping-math)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wdouble-promotion -Wformat=2
        -Wshadow -Wold-style-cast -Wcast-qual -Wcast-align -Wundef -Wnon-virtual-dtor
        -Woverloaded-virtual -Wimplicit-fallthrough -Wmissing-declarations
        $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wlogical-op>
        $<$<BOOL:${VELMORANT_WERROR}>:-Werror>)
    if(VELMORANT_FUZZ) # what libFuzzer learns from; it needn't see comparisons
        target_compile_options(${target} PRIVATE
            -fsanitize=fuzzer-no-link -fno-sanitize-coverage=trace-cmp)
        target_link_options(${target} PUBLIC -fsanitize=fuzzer-no-link)
    endif()
    if(VELMORANT_SANITIZE)
        # float-cast-overflow is not part of "undefined" everywhere.
        set(sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all)
        target_compile_options(${target} PRIVATE ${sanitizers} -fno-omit-frame-pointer)
        target_link_options(${target} PUBLIC ${sanitizers})
    elseif(VELMORANT_HARDEN)
        velmorant_harden(${target})
    endif()
endfunction()
