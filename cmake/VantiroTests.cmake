# How a test becomes part of the project.

# vantiro_test_environment(NAME...)
#
# Gives registered tests the surroundings that all tests share: one locale, whatever the developer's is, and sanitizers
# that end the program at the first finding.
function(vantiro_test_environment)
    set_tests_properties(${ARGN} PROPERTIES
        TIMEOUT 120
        ENVIRONMENT "LC_ALL=C.UTF-8;\
ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1;\
UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1;\
TSAN_OPTIONS=halt_on_error=1:suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.suppressions")
endfunction()

# GCC 12 sees dangers in the inlined code of std::string and QSharedPointer where there are none; only tests join texts
# and build lists in the ways that lead it there. The shipped code is compiled with these warnings.
function(vantiro_quiet_false_positives target)
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized;-Wno-array-bounds;-Wno-stringop-overflow>)
endfunction()

# vantiro_set_up_for_tests(TARGET)
#
# Sets up a target of tests. Programs that do the tests' heavy work are set up as the product is.
function(vantiro_set_up_for_tests target)
    vantiro_set_up(${target})
    vantiro_quiet_false_positives(${target})
    if(NOT VANTIRO_OPTIMIZE_TESTS)
        target_compile_options(${target} PRIVATE -O0)
    endif()
endfunction()

# vantiro_add_test(NAME SOURCES file... [LIBRARIES target...] [LABELS label...])
#
# Builds the sources into one executable with the project's test main and registers it as one test. For each label L the
# target tests_L builds all tests that carry it.
function(vantiro_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES;LABELS")
    if(arg_UNPARSED_ARGUMENTS OR NOT arg_SOURCES)
        message(FATAL_ERROR "vantiro_add_test(${name}): give SOURCES, LIBRARIES and LABELS, and nothing else")
    endif()

    add_executable(${name} ${arg_SOURCES})
    vantiro_set_up_for_tests(${name})
    target_link_libraries(${name} PRIVATE vantiro_test_main ${arg_LIBRARIES})

    add_test(NAME ${name} COMMAND ${name})
    vantiro_test_environment(${name})
    set_tests_properties(${name} PROPERTIES LABELS "${arg_LABELS}")

    foreach(label IN LISTS arg_LABELS)
        if(NOT TARGET tests_${label})
            add_custom_target(tests_${label})
        endif()
        add_dependencies(tests_${label} ${name})
    endforeach()
endfunction()

# vantiro_join(NAME [APART file...])
#
# Compiles the files of a test program eight at a time, where the preset asks for quick builds: most of what a file of
# tests costs is the headers and the templates that all of them use. Files whose private names another file has too stand
# APART.
function(vantiro_join name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "APART")
    if(NOT VANTIRO_PRECOMPILE)
        return()
    endif()
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
    # What lies in a file's unnamed namespace is private to it still, though the compiler sees a header there.
    target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
    if(arg_APART)
        set_source_files_properties(${arg_APART} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
endfunction()
