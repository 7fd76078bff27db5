# How this project makes its targets. Warnings are errors in all of them.
set(ROLLOUT_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
    -Woverloaded-virtual -Werror)

if(ROLLOUT_NATIVE)
    # Wide literals are UTF-16 as on Windows; the sanitizers stop at the first finding; fuzzers see what code they reach.
    add_compile_options(-fshort-wchar -g -O1 -fno-omit-frame-pointer
        -fsanitize=address,undefined,fuzzer-no-link -fno-sanitize-recover=all)
    add_link_options(-fsanitize=address,undefined)
    add_compile_definitions(ROLLOUT_NATIVE=1)
else()
    enable_language(RC)
    add_compile_definitions(UNICODE _UNICODE WINVER=0x0A00 _WIN32_WINNT=0x0A00 _WIN32_IE=0x0A00 NOMINMAX
        WIN32_LEAN_AND_MEAN STRICT)
    # No path of the building machine and no time stamp: two builds of one commit are equal to the byte.
    add_compile_options(-O2 -ffunction-sections -fdata-sections
        -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
    add_link_options(-static -s -Wl,--gc-sections -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va
        -Wl,--no-insert-timestamp)
    # Everything that is run or loaded at run time stands in one folder, as in the product.
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
    set(CMAKE_SHARED_LIBRARY_PREFIX "")
endif()

# What nearly every Windows file includes is compiled once. A file still includes what it needs: a check holds each to
# that, since the compiler no longer notices.
set(ROLLOUT_PRECOMPILED_HEADERS <windows.h> <commctrl.h> <msi.h> <msiquery.h> <algorithm> <array> <functional> <map>
    <memory> <optional> <set> <string> <vector>)
function(rollout_use_precompiled_headers target flavor)
    if(ROLLOUT_NATIVE)
        return() # the rules see nothing of Windows there
    endif()
    set(headers rollout_precompiled_${flavor})
    if(NOT TARGET ${headers})
        set(source ${PROJECT_BINARY_DIR}/${headers}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "")
        add_library(${headers} STATIC ${source})
        target_compile_options(${headers} PRIVATE ${ROLLOUT_WARNINGS})
        target_precompile_headers(${headers} PRIVATE ${ROLLOUT_PRECOMPILED_HEADERS} ${ARGN})
        if(flavor STREQUAL "tests")
            target_link_libraries(${headers} PRIVATE gtest)
        endif()
    endif()
    target_precompile_headers(${target} REUSE_FROM ${headers})
endfunction()

# rollout_add_sources(NAME RULES files... WINDOWS files...)
# A static library NAME. The RULES files include no window header; they are compiled in both trees, natively
# under the sanitizers. The WINDOWS files are compiled for Windows alone.
function(rollout_add_sources name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "RULES;WINDOWS;LINK")
    set(files ${arg_RULES})
    if(NOT ROLLOUT_NATIVE)
        list(APPEND files ${arg_WINDOWS})
    endif()
    if(NOT files)
        return()
    endif()
    add_library(${name} STATIC ${files})
    target_compile_options(${name} PRIVATE ${ROLLOUT_WARNINGS})
    rollout_use_precompiled_headers(${name} product)
    foreach(library ${arg_LINK})
        if(NOT ROLLOUT_NATIVE OR TARGET ${library})
            target_link_libraries(${name} PUBLIC ${library})
        endif()
    endforeach()
endfunction()

# rollout_import_library(NAME FILE.def): an import library for a system DLL for which mingw-w64 ships only the header.
function(rollout_import_library name def)
    set(archive ${CMAKE_CURRENT_BINARY_DIR}/lib${name}.a)
    add_custom_command(OUTPUT ${archive} COMMAND ${CMAKE_DLLTOOL} -d ${def} -l ${archive} -m i386:x86-64
        DEPENDS ${def} VERBATIM)
    add_custom_target(${name}_archive DEPENDS ${archive})
    add_library(${name} INTERFACE)
    add_dependencies(${name} ${name}_archive)
    target_link_libraries(${name} INTERFACE ${archive})
endfunction()

# GoogleTest comes as source with Debian's package, so that it is built by the compiler that builds the tests.
function(rollout_add_googletest)
    if(TARGET gtest)
        return()
    endif()
    find_path(GOOGLETEST_SOURCE googletest/src/gtest-all.cc PATHS /usr/src/googletest REQUIRED NO_CMAKE_FIND_ROOT_PATH)
    add_library(gtest STATIC ${GOOGLETEST_SOURCE}/googletest/src/gtest-all.cc)
    target_include_directories(gtest SYSTEM PUBLIC ${GOOGLETEST_SOURCE}/googletest/include
        PRIVATE ${GOOGLETEST_SOURCE}/googletest)
    target_compile_options(gtest PRIVATE -w)
endfunction()

# rollout_add_test(NAME FILES files... LINK libraries...)
# A test program. In the native tree it is a host program, in the Windows tree an .exe for Wine. Each has its own
# main (tests/support/), which lists passed and failed tests for the script `test`.
function(rollout_add_test name)
    rollout_add_test_program(${name} ${ARGN})
    set_property(GLOBAL APPEND PROPERTY ROLLOUT_TESTS ${name})
endfunction()

# The same, but the script `test` doesn't run it.
function(rollout_add_test_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "FILES;LINK")
    rollout_add_googletest()
    add_executable(${name} ${arg_FILES} ${PROJECT_SOURCE_DIR}/tests/support/test_main.cpp)
    if(NOT ROLLOUT_NATIVE) # there the runner alone counts the seconds: no windows, no message loops
        target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/test_deadline.cpp)
    endif()
    target_compile_options(${name} PRIVATE ${ROLLOUT_WARNINGS})
    target_link_libraries(${name} PRIVATE gtest ${arg_LINK})
    rollout_use_precompiled_headers(${name} tests <gtest/gtest.h>)
endfunction()

# rollout_add_fuzzer(NAME FILES files... LINK libraries...): a libFuzzer program; its seeds lie in fuzz/corpus/NAME.
function(rollout_add_fuzzer name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "FILES;LINK")
    add_executable(${name} ${arg_FILES})
    target_compile_options(${name} PRIVATE ${ROLLOUT_WARNINGS})
    target_link_libraries(${name} PRIVATE ${arg_LINK} -fsanitize=fuzzer)
    set_property(GLOBAL APPEND PROPERTY ROLLOUT_FUZZERS ${name})
endfunction()

# rollout_list_programs(PROPERTY FILE): the paths of the programs made so far, one a line, into the build tree. The
# script `test` runs these and not what it finds: a program that is made no more may still lie there.
function(rollout_list_programs property file)
    get_property(names GLOBAL PROPERTY ${property})
    set(lines "")
    foreach(name ${names})
        string(APPEND lines "$<TARGET_FILE:${name}>\n")
    endforeach()
    file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/${file} CONTENT "${lines}")
endfunction()
