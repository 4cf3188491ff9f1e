# One static library per folder of src/. A room sees only what it names here, so the logic cannot
# reach the toolkit even by accident: its include path is not there.

include(CheckCXXCompilerFlag)

add_library(pixelhain_options INTERFACE)
target_compile_options(pixelhain_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wformat-security)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_BUILD_TYPE STREQUAL Release)
    # Fully optimised, the compiler sees these in the standard library's strings and optionals, where
    # they are not. The presets with sanitizers keep the warnings.
    target_compile_options(pixelhain_options INTERFACE -Wno-array-bounds -Wno-maybe-uninitialized
        -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread)
endif()
# A library of which a program uses nothing is not loaded at its start.
target_link_options(pixelhain_options INTERFACE -Wl,--as-needed)
if(CMAKE_BUILD_TYPE STREQUAL Release)
    # What Debian hardens its packages with, and what overruns jump over or return to; that a program
    # can be loaded anywhere is the compiler's own default. It is here, not in debian/rules, so that
    # what is tested and measured is what is installed.
    target_compile_options(pixelhain_options INTERFACE
        -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    foreach(option -fstack-clash-protection -fcf-protection) # not for every processor
        string(MAKE_C_IDENTIFIER "PIXELHAIN_HAS${option}" has)
        check_cxx_compiler_flag(${option} ${has})
        if(${has})
            target_compile_options(pixelhain_options INTERFACE ${option})
        endif()
    endforeach()
    target_link_options(pixelhain_options INTERFACE -Wl,-z,relro -Wl,-z,now)
endif()
if(PIXELHAIN_WERROR)
    target_compile_options(pixelhain_options INTERFACE -Werror)
endif()
if(PIXELHAIN_SANITIZE)
    # The check of virtual tables asks the kernel whether memory is there, in ways that a decoder
    # process may not: it would take every object there for none.
    target_compile_options(pixelhain_options INTERFACE
        -fsanitize=${PIXELHAIN_SANITIZE} -fno-sanitize=vptr
        -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(pixelhain_options INTERFACE -fsanitize=${PIXELHAIN_SANITIZE})
endif()
if(PIXELHAIN_FUZZ)
    target_compile_options(pixelhain_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
target_link_libraries(pixelhain_options INTERFACE Threads::Threads)

# What nearly every source includes is read once for each target. Only the presets with sanitizers do
# so: the others find a source that lacks an include, and share their objects through the cache.
function(pixelhain_precompile target)
    get_target_property(sources ${target} SOURCES)
    list(LENGTH sources count)
    if(PIXELHAIN_PRECOMPILE AND count GREATER 5) # below, it costs more than it saves
        target_precompile_headers(${target} PRIVATE
            <algorithm> <array> <chrono> <functional> <map> <memory> <optional> <ranges> <span>
            <string> <string_view> <vector> ${ARGN})
        target_compile_options(${target} PRIVATE -fpch-preprocess) # ccache needs to see them
    endif()
endfunction()

# How test programs are compiled; further headers are precompiled with them.
function(pixelhain_test_compilation target)
    pixelhain_precompile(${target} <doctest/doctest.h> ${ARGN})
    # It is the program that is to be optimised and checked, not its tests: doing that to their checks
    # took more than half of the time of a build.
    if(PIXELHAIN_SANITIZE MATCHES address)
        target_compile_options(${target} PRIVATE -O0 -fno-sanitize=undefined)
    elseif(PIXELHAIN_SANITIZE)
        # With its checks in between the compiler sees overruns of constant strings that are none.
        target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overflow)
    else()
        target_compile_options(${target} PRIVATE -O1)
    endif()
endfunction()

# pixelhain_room(NAME USES room… LIBRARIES imported-target… PRECOMPILE <header>…): every .cpp and .h
# of the folder.
function(pixelhain_room name)
    cmake_parse_arguments(ARG "RECURSE" "" "USES;LIBRARIES;PRECOMPILE" ${ARGN})
    if(ARG_RECURSE)
        set(glob GLOB_RECURSE)
    else()
        set(glob GLOB)
    endif()
    file(${glob} sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    file(${glob} headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    set(uses ${ARG_USES})
    list(TRANSFORM uses PREPEND pixelhain_)

    if(sources)
        add_library(pixelhain_${name} STATIC ${sources})
        pixelhain_precompile(pixelhain_${name} ${ARG_PRECOMPILE})
        set(scope PUBLIC)
    else()
        add_library(pixelhain_${name} INTERFACE)
        set(scope INTERFACE)
    endif()
    # Headers are built alone to see that they can be. One that a source of the same name includes
    # first is seen by that.
    set(alone ${headers})
    foreach(source IN LISTS sources)
        string(REGEX REPLACE "\\.cpp$" ".h" twin ${source})
        list(REMOVE_ITEM alone ${twin})
    endforeach()
    target_sources(pixelhain_${name} ${scope}
        FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${headers}
        FILE_SET alone TYPE HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${alone})
    set_property(TARGET pixelhain_${name} PROPERTY INTERFACE_HEADER_SETS_TO_VERIFY alone)
    target_link_libraries(pixelhain_${name} ${scope} pixelhain_options ${uses} ${ARG_LIBRARIES})
endfunction()

# pixelhain_tests(NAME USES room…): one test program of all *Test.cpp of the folder, run by ctest
# as PRESET.NAME. The target "tests" builds all of them and nothing else.
add_custom_target(tests)
function(pixelhain_tests name)
    cmake_parse_arguments(ARG "RECURSE" "" "USES;LIBRARIES" ${ARGN})
    if(PIXELHAIN_TESTS AND NOT name IN_LIST PIXELHAIN_TESTS)
        return()
    endif()
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
    if(NOT sources)
        return()
    endif()
    set(uses ${ARG_USES})
    list(TRANSFORM uses PREPEND pixelhain_)
    add_executable(test_${name} ${sources})
    target_link_libraries(test_${name} PRIVATE pixelhain_test_support ${uses} ${ARG_LIBRARIES})
    pixelhain_test_compilation(test_${name})
    get_filename_component(preset ${CMAKE_BINARY_DIR} NAME)
    add_dependencies(tests test_${name})
    add_test(NAME ${preset}.${name} COMMAND test_${name} --no-version)
    set_tests_properties(${preset}.${name} PROPERTIES LABELS ${name} TIMEOUT 600
        ENVIRONMENT "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks:print_suppressions=0")
endfunction()
