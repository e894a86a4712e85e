# What every target of ours is built with, and the functions that declare libraries and tests.

add_library(miravel_options INTERFACE)
target_compile_options(miravel_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(MIRAVEL_WERROR)
    target_compile_options(miravel_options INTERFACE -Werror)
endif()
target_compile_definitions(
    miravel_options
    INTERFACE
        QT_MESSAGELOGCONTEXT # file and line reach the log in release builds too
        QT_NO_CAST_FROM_ASCII
        QT_NO_CAST_TO_ASCII
        QT_NO_URL_CAST_FROM_STRING
        QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
target_include_directories(miravel_options INTERFACE "${PROJECT_SOURCE_DIR}")

if(MIRAVEL_SANITIZE)
    target_compile_options(miravel_options INTERFACE -fsanitize=${MIRAVEL_SANITIZE}
                                                     -fno-omit-frame-pointer)
    target_link_options(miravel_options INTERFACE -fsanitize=${MIRAVEL_SANITIZE})
endif()

# Only what is measured counts what is reached; the rest is the release build's, which the compiler
# cache has.
function(miravel_count_reached target)
    if(MIRAVEL_COVERAGE)
        target_compile_options(${target} PRIVATE -O0 --coverage -fprofile-update=atomic)
        target_link_options(${target} PUBLIC --coverage)
    endif()
endfunction()

# A log line names the bare source file on every platform, so each source folder is mapped away.
# The last matching map wins, so deeper folders come later.
function(miravel_bare_file_names target)
    get_target_property(sources ${target} SOURCES)
    get_target_property(base ${target} SOURCE_DIR)
    set(folders "${base}")
    foreach(source IN LISTS sources)
        cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${base}" OUTPUT_VARIABLE full)
        cmake_path(GET full PARENT_PATH folder)
        list(APPEND folders "${folder}")
    endforeach()
    list(REMOVE_DUPLICATES folders)
    list(SORT folders)
    foreach(folder IN LISTS folders)
        # A compiler cache may hand sources over by their path from the build folder.
        file(RELATIVE_PATH from_build "${CMAKE_BINARY_DIR}" "${folder}")
        target_compile_options(${target} PRIVATE "-fmacro-prefix-map=${folder}/="
                                                 "-fmacro-prefix-map=${from_build}/=")
    endforeach()
endfunction()

# miravel_platform_sources(<variable> <stem>...): puts the file of each stem that this platform builds
# into the variable: <stem>_windows.cpp or <stem>_other.cpp.
function(miravel_platform_sources variable)
    set(sources "")
    foreach(stem IN LISTS ARGN)
        if(WIN32)
            list(APPEND sources ${stem}_windows.cpp)
        else()
            list(APPEND sources ${stem}_other.cpp)
        endif()
    endforeach()
    set(${variable} "${sources}" PARENT_SCOPE)
endfunction()

# miravel_add_library(<name> SOURCES <file>... LINK <target>...): one static library for a module.
function(miravel_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC miravel_options ${arg_LINK})
    miravel_bare_file_names(${name})
    file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
    if(folder MATCHES "^(app|service|localchannel|locallibrary|ui)(/|$)")
        miravel_count_reached(${name})
    endif()
endfunction()

# miravel_add_helper(<name> LINK <target>...): a program that tests start as another process.
function(miravel_add_helper name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINK")
    add_executable(${name} ${name}.cpp)
    target_link_libraries(${name} PRIVATE ${arg_LINK})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
endfunction()

# miravel_add_test(<[folder/]name> [THREADED] [SOURCES <file>...] [LINK <target>...] [TIMEOUT <s>]):
# one Qt Test program, run by CTest on the offscreen platform. THREADED marks it for the thread
# sanitizer.
function(miravel_add_test path)
    cmake_parse_arguments(PARSE_ARGV 1 arg "THREADED" "TIMEOUT" "SOURCES;LINK")
    cmake_path(GET path FILENAME name)
    if(NOT arg_SOURCES)
        set(arg_SOURCES ${path}.cpp)
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    if(WIN32)
        math(EXPR arg_TIMEOUT "3 * ${arg_TIMEOUT}") # under Wine
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE miravel_options Qt5::Test ${arg_LINK})
    miravel_bare_file_names(${name})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    add_test(NAME ${name} COMMAND ${name})
    miravel_test_environment(${name} ${arg_TIMEOUT})
    if(arg_THREADED)
        set_tests_properties(${name} PROPERTIES LABELS threaded)
    endif()
    if(WIN32 AND "${arg_LINK}" MATCHES "miravel_(answer|dialogs|preview|style|text|window_test_support)")
        # Only one window at a time is the active one, and some wait until theirs is; there is one
        # mouse pointer for all.
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK active-window)
    endif()
endfunction()

# miravel_not_on_windows(<test> <reason>): a test that the Windows build does not have. The list is
# printed with the results there.
set(MIRAVEL_NOT_ON_WINDOWS_FILE "${CMAKE_BINARY_DIR}/not-on-windows.txt")
file(WRITE "${MIRAVEL_NOT_ON_WINDOWS_FILE}" "")
function(miravel_not_on_windows name reason)
    file(APPEND "${MIRAVEL_NOT_ON_WINDOWS_FILE}" "    ${name}: ${reason}\n")
endfunction()

# The fixed font, locale and platform that make pixel and text results the same on every machine.
function(miravel_test_environment test timeout)
    # The offscreen platform finds no fonts on Windows; there the tests see what users see.
    set(platform offscreen)
    if(WIN32)
        set(platform windows)
    endif()
    set(environment "LC_ALL=C.UTF-8" "QT_QPA_PLATFORM=${platform}"
                    "FONTCONFIG_FILE=${PROJECT_SOURCE_DIR}/tools/desktop/fonts.conf")
    if(MIRAVEL_SANITIZE)
        list(APPEND environment
             "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/tsan.supp halt_on_error=1"
             "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/lsan.supp print_suppressions=0"
             "UBSAN_OPTIONS=halt_on_error=1 print_stacktrace=1")
    endif()
    set_tests_properties(${test} PROPERTIES ENVIRONMENT "${environment}" TIMEOUT ${timeout})
endfunction()

# miravel_add_python_test(<name> [ENVIRONMENT <NAME=value>...] [TIMEOUT <s>]): one unittest program
# <name>.py that drives the real executable on a screen of its own, with tools on its path.
function(miravel_add_python_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "ENVIRONMENT")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
    endif()
    if(WIN32)
        math(EXPR arg_TIMEOUT "3 * ${arg_TIMEOUT}") # under Wine
    endif()
    # The system's own interpreter first: the imaging library is installed for that one.
    find_program(MIRAVEL_PYTHON python3 HINTS /usr/bin NO_CMAKE_ENVIRONMENT_PATH REQUIRED)
    add_test(NAME ${name} COMMAND "${MIRAVEL_PYTHON}" "${CMAKE_CURRENT_SOURCE_DIR}/${name}.py" -v)
    miravel_test_environment(${name} ${arg_TIMEOUT})
    set_property(
        TEST ${name}
        APPEND
        PROPERTY ENVIRONMENT "PYTHONPATH=${PROJECT_SOURCE_DIR}/tools"
                 "PYTHONDONTWRITEBYTECODE=1" "MIRAVEL_BUILD_DIR=${CMAKE_BINARY_DIR}"
                 ${arg_ENVIRONMENT})
    set_tests_properties(${name} PROPERTIES LABELS e2e)
endfunction()
