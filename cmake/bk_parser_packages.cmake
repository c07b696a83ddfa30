# The packages that tests use. When cross-compiling, none are installed for the target, so GoogleTest is compiled from
# its sources.

set(BK_PARSER_GTEST_SOURCE /usr/src/googletest/googletest CACHE PATH
    "Sources of GoogleTest, used when the tests are built for another machine")

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
