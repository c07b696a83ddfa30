# Takes the steps of the vcpkg port with stand-ins for vcpkg's own functions: cmake -DBUILD=<build> -DWORK=<folder> -P <this>.
# What is installed comes from BUILD; the options that the port gives must be the project's.

cmake_minimum_required(VERSION 3.22)
set(CURRENT_PORT_DIR ${CMAKE_CURRENT_LIST_DIR}/vcpkg/bk-parser)
set(CURRENT_PACKAGES_DIR ${WORK}/packages)
set(FEATURES core tools)
file(REMOVE_RECURSE ${WORK})

function(must_exist)
    foreach(path IN LISTS ARGN)
        if(NOT EXISTS ${path})
            message(FATAL_ERROR "The port wants ${path}, which is not there.")
        endif()
    endforeach()
endfunction()

macro(vcpkg_check_features)
    cmake_parse_arguments(asked "" "OUT_FEATURE_OPTIONS" "FEATURES" ${ARGN})
    list(GET asked_FEATURES 1 feature_option)
    set(${asked_OUT_FEATURE_OPTIONS} -D${feature_option}=ON)
endmacro()

function(vcpkg_cmake_configure)
    cmake_parse_arguments(asked "" "SOURCE_PATH" "OPTIONS" ${ARGN})
    must_exist(${asked_SOURCE_PATH}/CMakeLists.txt)
    file(READ ${BUILD}/CMakeCache.txt cache)
    foreach(option IN LISTS asked_OPTIONS)
        string(REGEX REPLACE "^-D([A-Z_]+)=(ON|OFF)$" "\\1" name ${option})
        if(NOT cache MATCHES "\n${name}:BOOL=")
            message(FATAL_ERROR "The port gives ${option}, which is no option of the project.")
        endif()
    endforeach()
endfunction()

function(vcpkg_cmake_install)
    execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${CURRENT_PACKAGES_DIR} OUTPUT_QUIET
        COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(vcpkg_cmake_config_fixup)
    cmake_parse_arguments(asked "" "PACKAGE_NAME;CONFIG_PATH" "" ${ARGN})
    must_exist(${CURRENT_PACKAGES_DIR}/${asked_CONFIG_PATH}/${asked_PACKAGE_NAME}-config.cmake)
endfunction()

function(vcpkg_fixup_pkgconfig)
    must_exist(${CURRENT_PACKAGES_DIR}/lib/pkgconfig/bk_parser.pc
        ${CURRENT_PACKAGES_DIR}/include/bk_parser/parser/parser_file.h)
endfunction()

function(vcpkg_copy_tools)
    cmake_parse_arguments(asked "AUTO_CLEAN" "" "TOOL_NAMES" ${ARGN})
    foreach(tool IN LISTS asked_TOOL_NAMES)
        must_exist(${CURRENT_PACKAGES_DIR}/bin/${tool})
    endforeach()
endfunction()

function(vcpkg_copy_pdbs)
endfunction()

function(vcpkg_install_copyright)
    cmake_parse_arguments(asked "" "" "FILE_LIST" ${ARGN})
    must_exist(${asked_FILE_LIST})
endfunction()

include(${CURRENT_PORT_DIR}/portfile.cmake)
