# How every target of the tree is compiled.

add_library(vantiro_warnings INTERFACE)
target_compile_options(vantiro_warnings INTERFACE
    -Wall
    -Wextra
    -Wpedantic
    -Wconversion
    -Wshadow
    -Wnon-virtual-dtor
    -Woverloaded-virtual
    # GCC keeps signs out of -Wconversion in C++ and Clang does not: the list means the same to both.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>
    # GCC 12 sees overlaps in the inlined operator+ of std::string that are not there (its bug 105329), at -O3 above all.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<BOOL:${VANTIRO_WERROR}>:-Werror>)

# What a build is instrumented with: sanitizers, coverage counters, the fuzzer's feedback.
add_library(vantiro_sanitizers INTERFACE)
if(VANTIRO_SANITIZE)
    target_compile_options(vantiro_sanitizers INTERFACE
        -fsanitize=${VANTIRO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(vantiro_sanitizers INTERFACE -fsanitize=${VANTIRO_SANITIZE})
endif()
if(VANTIRO_COVERAGE)
    target_compile_options(vantiro_sanitizers INTERFACE --coverage)
    target_link_options(vantiro_sanitizers INTERFACE --coverage)
endif()
if(VANTIRO_FUZZ)
    target_compile_options(vantiro_sanitizers INTERFACE -fsanitize=fuzzer-no-link)
    target_link_options(vantiro_sanitizers INTERFACE -fsanitize=fuzzer-no-link)
endif()

# vantiro_set_up(TARGET)
#
# Gives a target the language, the warnings and the instrumentation of the project. Every target with sources of its own
# calls it; visibility and position independence hold for the whole tree already.
function(vantiro_set_up target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 20
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    # Flags of our own build must not reach those who link an installed or exported target.
    target_link_libraries(${target} PRIVATE
        $<BUILD_INTERFACE:vantiro_warnings>
        $<BUILD_INTERFACE:vantiro_sanitizers>)
endfunction()

# vantiro_precompile(TARGET HEADER...)
#
# Lets the target's files share one reading of the headers, where the preset asks for it. A release is built without, and
# so proves that every file includes what it needs.
function(vantiro_precompile target)
    if(VANTIRO_PRECOMPILE)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()
