# The packages that tools and tests use. For another machine than the one that builds, where none are installed, GoogleTest
# is compiled from its sources and the headers of CLI11 are taken from the building machine: a copy of them alone, for
# the folder that they stand in holds the headers of the building machine's own C library.

set(BK_PARSER_GTEST_SOURCE /usr/src/googletest/googletest CACHE PATH
    "Sources of GoogleTest, used when the tests are built for another machine")

macro(bk_parser_find_cli11)
    if(CMAKE_CROSSCOMPILING)
        bk_parser_copy_cli11()
    else()
        find_package(CLI11 CONFIG)
    endif()
endmacro()

function(bk_parser_copy_cli11)
    find_path(BK_PARSER_CLI11_INCLUDE CLI/CLI.hpp PATHS /usr/include /usr/local/include NO_DEFAULT_PATH
        NO_CMAKE_FIND_ROOT_PATH)
    if(NOT BK_PARSER_CLI11_INCLUDE)
        return()
    endif()
    set(copy ${PROJECT_BINARY_DIR}/headers)
    file(COPY ${BK_PARSER_CLI11_INCLUDE}/CLI DESTINATION ${copy})
    add_library(bk_parser_cli11 INTERFACE)
    target_include_directories(bk_parser_cli11 SYSTEM INTERFACE ${copy})
    add_library(CLI11::CLI11 ALIAS bk_parser_cli11)
endfunction()

macro(bk_parser_find_gtest)
    if(CMAKE_CROSSCOMPILING)
        bk_parser_build_gtest()
    else()
        find_package(GTest REQUIRED)
    endif()
endmacro()

function(bk_parser_build_gtest)
    set(source ${BK_PARSER_GTEST_SOURCE})
    if(NOT EXISTS ${source}/src/gtest-all.cc)
        message(FATAL_ERROR "The tests for another machine need GoogleTest's sources: set BK_PARSER_GTEST_SOURCE.")
    endif()
    find_package(Threads REQUIRED)
    add_library(bk_parser_gtest STATIC ${source}/src/gtest-all.cc ${source}/src/gtest_main.cc)
    target_compile_features(bk_parser_gtest PUBLIC cxx_std_20)
    target_include_directories(bk_parser_gtest SYSTEM PUBLIC ${source}/include PRIVATE ${source})
    target_link_libraries(bk_parser_gtest PUBLIC Threads::Threads)
    add_library(GTest::gtest_main ALIAS bk_parser_gtest)
endfunction()
