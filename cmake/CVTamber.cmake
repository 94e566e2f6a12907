# SPDX-License-Identifier: GPL-3.0-or-later
# Compiler settings, and the functions that folders use to declare what they hold.

include(CheckCXXCompilerFlag)

option(CVTAMBER_TESTS "Build the tests" ON)
option(CVTAMBER_BENCH "Build the benchmarks (needs Google Benchmark)" OFF)
option(CVTAMBER_FUZZ "Build the fuzz targets" OFF)
option(CVTAMBER_WERROR "Treat warnings as errors" ON)
option(CVTAMBER_PCH "Precompile headers of Qt" OFF)
option(CVTAMBER_SYNTAX_ONLY "Make no code: read each source by itself, which shows what it forgets to include" OFF)
set(CVTAMBER_UNITY 0 CACHE STRING "How many sources of a library are compiled as one; 0 compiles each by itself")
set(CVTAMBER_SANITIZE "" CACHE STRING "Sanitizers for -fsanitize, separated by commas")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

if(CVTAMBER_SYNTAX_ONLY)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${PROJECT_SOURCE_DIR}/tools/syntax-only)
    set(CMAKE_CXX_CREATE_STATIC_LIBRARY "<CMAKE_COMMAND> -E touch <TARGET>")
    set(CMAKE_CXX_LINK_EXECUTABLE "<CMAKE_COMMAND> -E touch <TARGET>")
endif()

add_library(cvtamber_options INTERFACE)
target_include_directories(cvtamber_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_definitions(cvtamber_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_BEFORE=0x060400 QT_USE_QSTRINGBUILDER
    CVTAMBER_VERSION="${PROJECT_VERSION}")

if(MSVC)
    target_compile_options(cvtamber_options INTERFACE /W4 /permissive- /utf-8 $<$<BOOL:${CVTAMBER_WERROR}>:/WX>)
else()
    target_compile_options(cvtamber_options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
        -Wconversion $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wno-sign-conversion> # GCC's -Wconversion leaves signs alone
        -Wformat=2 -Wimplicit-fallthrough -Wextra-semi
        $<$<BOOL:${CVTAMBER_WERROR}>:-Werror>
        -fstack-protector-strong)
    if(UNIX AND NOT APPLE)
        if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
            target_compile_options(cvtamber_options INTERFACE -fstack-clash-protection)
            # Not every processor has it.
            check_cxx_compiler_flag(-fcf-protection CVTAMBER_CF_PROTECTION)
            if(CVTAMBER_CF_PROTECTION)
                target_compile_options(cvtamber_options INTERFACE -fcf-protection)
            endif()
        endif()
        target_link_options(cvtamber_options INTERFACE -Wl,-z,relro,-z,now -Wl,-z,noexecstack)
    endif()
    if(CVTAMBER_PCH AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        # An upgrade of the system gives headers new dates that are older than the build.
        target_compile_options(cvtamber_options INTERFACE "SHELL:-Xclang -fno-pch-timestamp")
    endif()
    if(CVTAMBER_SANITIZE)
        target_compile_options(cvtamber_options INTERFACE
            -fsanitize=${CVTAMBER_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(cvtamber_options INTERFACE -fsanitize=${CVTAMBER_SANITIZE})
    else()
        # Fortification needs optimisation and hides faults from the sanitizers, hence only here.
        target_compile_options(cvtamber_options INTERFACE $<$<CONFIG:Release>:-U_FORTIFY_SOURCE>
            $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
        # What nobody calls is left out, also where it was compiled together with what is called.
        target_compile_options(cvtamber_options INTERFACE
            $<$<CONFIG:Release>:-ffunction-sections> $<$<CONFIG:Release>:-fdata-sections>)
        target_link_options(cvtamber_options INTERFACE $<$<CONFIG:Release>:-Wl,--gc-sections>)
        target_compile_definitions(cvtamber_options INTERFACE $<$<CONFIG:Release>:_GLIBCXX_ASSERTIONS>)
    endif()
endif()

# For tests: no time for optimising what runs once, and without the macros that the headers of Qt Test look at, that
# differ from test to test, and that none needs.
add_library(cvtamber_test_options INTERFACE)
if(NOT MSVC)
    target_compile_options(cvtamber_test_options INTERFACE
        $<$<CONFIG:Debug>:-O0> -UQT_NETWORK_LIB -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)
endif()

# cvtamber_precompile(TARGET WHICH lib ...): gives a target the precompiled headers WHICH, which are made once for all
# targets, with the flags of these libraries. Those for libraries and programs hold little more than nearly every
# source reads anyway.
set(cvtamber_core_headers <QString> <QStringList> <algorithm> <functional> <memory> <optional> <utility> <vector>)
set(cvtamber_qml_headers ${cvtamber_core_headers} <QQmlComponent> <QQmlContext> <QQmlEngine> <QtQml/qqmlprivate.h>)
set(cvtamber_test_headers ${cvtamber_core_headers}
    <QCoreApplication> <QDir> <QFile> <QMap> <QSet> <QSignalSpy> <QTemporaryDir> <QTest> <deque> <map>)
if(CVTAMBER_SYNTAX_ONLY)
    # Nearly every header of ours reads it: nothing is hidden by it that another include would not give.
    set(cvtamber_core_headers <QString>)
    set(cvtamber_qml_headers <QString>)
endif()
function(cvtamber_precompile name which)
    if(NOT CVTAMBER_PCH)
        return()
    endif()
    set(from cvtamber_${which}_headers)
    if(NOT TARGET ${from})
        set(source ${CMAKE_BINARY_DIR}/${from}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "")
        add_library(${from} OBJECT ${source})
        target_link_libraries(${from} PRIVATE cvtamber_options ${ARGN})
        target_precompile_headers(${from} PRIVATE ${${from}})
    endif()
    target_precompile_headers(${name} REUSE_FROM ${from})
endfunction()

# cvtamber_join(TARGET): lets the compiler read several of the target's sources as one, and Qt's headers once for them.
function(cvtamber_join name)
    if(CVTAMBER_UNITY)
        set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${CVTAMBER_UNITY})
    endif()
endfunction()

# cvtamber_library(NAME SOURCES a.cpp ... [PUBLIC lib ...] [PRIVATE lib ...])
# One library a folder; PUBLIC only for what its headers need.
function(cvtamber_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PUBLIC;PRIVATE")
    add_library(${name} STATIC ${arg_SOURCES})
    cvtamber_join(${name})
    target_link_libraries(${name} PUBLIC cvtamber_options ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
    if("Qt6::Qml" IN_LIST arg_PRIVATE)
        cvtamber_precompile(${name} qml Qt6::Qml)
    else()
        cvtamber_precompile(${name} core Qt6::Core)
    endif()
endfunction()

# cvtamber_program(NAME SOURCES main.cpp ... LIBRARIES lib ...)
function(cvtamber_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    add_executable(${name} ${arg_SOURCES})
    cvtamber_join(${name})
    target_link_libraries(${name} PRIVATE cvtamber_options ${arg_LIBRARIES})
    cvtamber_precompile(${name} core Qt6::Core)
endfunction()

# cvtamber_test(NAME SOURCES tst_x.cpp ... LIBRARIES lib ...): a Qt Test program, run by CTest without a display.
function(cvtamber_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "SOURCES;LIBRARIES")
    add_executable(${name} ${arg_SOURCES})
    # Named one by one: letting CMake look for them costs each program two more steps.
    foreach(source IN LISTS arg_SOURCES)
        cmake_path(GET source STEM stem)
        file(STRINGS ${source} with_moc REGEX "Q_OBJECT")
        if(with_moc AND source MATCHES "[.]cpp$")
            qt6_generate_moc(${source} ${CMAKE_CURRENT_BINARY_DIR}/${name}_moc/${stem}.moc TARGET ${name})
            target_sources(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${name}_moc/${stem}.moc)
        elseif(with_moc)
            set_target_properties(${name} PROPERTIES AUTOMOC ON)
        endif()
    endforeach()
    target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${name}_moc)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE cvtamber_options Qt6::Test ${arg_LIBRARIES})
    if(NOT arg_LIBRARIES MATCHES "Qt6::(Gui|Qml|Quick)")
        target_link_libraries(${name} PRIVATE cvtamber_test_options)
        cvtamber_precompile(${name} test Qt6::Test cvtamber_test_options)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;ASAN_OPTIONS=detect_stack_use_after_return=1")
endfunction()
