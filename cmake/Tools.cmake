# Faster tools where they are installed, the warnings, and the two helpers every folder uses.

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
find_program(MOLD mold)
if(MOLD)
    add_link_options(-fuse-ld=mold)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
                    -Werror -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Version 12 sees overlapping copies in plain string assignments.
    add_compile_options(-Wno-restrict)
endif()
add_compile_definitions(QT_NO_KEYWORDS)

if(TESSALOOM_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
    add_link_options(-fsanitize=address,undefined)
endif()

# tessaloom_library(name DEPENDS targets...): the sources of this folder (not of folders below it).
function(tessaloom_library name)
    cmake_parse_arguments(arg "" "" "DEPENDS;PRIVATE" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    if(sources)
        add_library(${name} STATIC ${sources})
        target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
        target_link_libraries(${name} PUBLIC ${arg_DEPENDS} PRIVATE ${arg_PRIVATE})
    else()
        add_library(${name} INTERFACE)
        target_include_directories(${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
        target_link_libraries(${name} INTERFACE ${arg_DEPENDS} ${arg_PRIVATE})
    endif()
endfunction()

# tessaloom_test(folder DEPENDS targets...): one test program from tests/<folder>/*.cpp.
function(tessaloom_test folder)
    cmake_parse_arguments(arg "" "" "DEPENDS" ${ARGN})
    string(REPLACE "/" "-" name "test-${folder}")
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
    if(NOT sources)
        return()
    endif()
    add_executable(${name} ${sources})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
    target_link_libraries(${name} PRIVATE ${arg_DEPENDS} tests-support GTest::gmock GTest::gtest_main)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()
