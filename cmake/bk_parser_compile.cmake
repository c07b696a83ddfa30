# How the project's own code is compiled. A project that includes this one with add_subdirectory keeps its own rules:
# warnings are errors only when this is the top-level project. They are not errors under g++'s sanitizers, whose checks
# cause false warnings.

if(BK_PARSER_FUZZ AND NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "The fuzzers need clang++: set CMAKE_CXX_COMPILER to it, or BK_PARSER_FUZZ to OFF.")
endif()

set(usual_sanitizers "")
if(BK_PARSER_FUZZ)
    set(usual_sanitizers "fuzzer-no-link,address,undefined")
endif()
set(BK_PARSER_SANITIZE "${usual_sanitizers}" CACHE STRING "Sanitizers to build with, as in \"address,undefined\"")

# The address and memory sanitizers see every object only when each has a block of its own. If the slabs are on
# nevertheless, they tell the address sanitizer which of their blocks are free.
set(usual_slabs ON)
if(BK_PARSER_SANITIZE MATCHES "address|memory|leak")
    set(usual_slabs OFF)
endif()
option(BK_PARSER_SLABS "Take small objects from slabs instead of the global heap" ${usual_slabs})

option(BK_PARSER_COVERAGE "Count which lines and branches of the library run (g++)" OFF)
mark_as_advanced(BK_PARSER_COVERAGE)

# Sources that are compiled together are in one folder, where no two sources define the same name.
function(bk_parser_unite_by_folder target)
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
        get_filename_component(folder ${source} DIRECTORY)
        string(MD5 group "${folder}")
        set_source_files_properties(${source} PROPERTIES UNITY_GROUP group_${group})
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()

add_library(bk_parser_own_code INTERFACE)
# Sanitizer and Debug builds check invariants (BK_ASSERT), because time does not matter there.
if(BK_PARSER_SANITIZE)
    target_compile_definitions(bk_parser_own_code INTERFACE BK_PARSER_ASSERTIONS)
else()
    target_compile_definitions(bk_parser_own_code INTERFACE $<$<CONFIG:Debug>:BK_PARSER_ASSERTIONS>)
endif()
set(warnings_are_errors OFF)
if(PROJECT_IS_TOP_LEVEL AND NOT (BK_PARSER_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU"))
    set(warnings_are_errors ON)
endif()
if(MSVC)
    target_compile_options(bk_parser_own_code INTERFACE /W4 /utf-8 /permissive-)
    if(warnings_are_errors)
        target_compile_options(bk_parser_own_code INTERFACE /WX)
    endif()
else()
    target_compile_options(bk_parser_own_code INTERFACE -Wall -Wextra -Wconversion -Wshadow)
    # g++ 12 wrongly reports an overlap in libstdc++'s std::string where text is prepended to a temporary.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        target_compile_options(bk_parser_own_code INTERFACE -Wno-restrict)
    endif()
    if(warnings_are_errors)
        target_compile_options(bk_parser_own_code INTERFACE -Werror)
    endif()
endif()

if(BK_PARSER_SANITIZE)
    set(sanitizer_options -fsanitize=${BK_PARSER_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_compile_options(${sanitizer_options})
    add_link_options(${sanitizer_options})
endif()
