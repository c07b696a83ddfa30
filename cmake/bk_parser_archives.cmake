# What cpack makes of an installed copy: a package for Debian and an archive, or a .zip for Windows.

set(CPACK_PACKAGE_NAME bk-parser)
set(CPACK_PACKAGE_VENDOR "The bk_parser developers")
set(CPACK_PACKAGE_CONTACT "The bk_parser developers <bk-parser@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "structured documents in text, binary, enciphered and archive forms")
set(CPACK_PACKAGE_DESCRIPTION "A C++20 library that holds structured documents in memory as trees of groups, entries and
values, and moves them between memory, text, bytes and archives; with its headers, and with bkdoc, a tool
that checks, shows, compares and converts documents.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_STRIP_FILES ON)

if(WIN32)
    set(CPACK_GENERATOR ZIP)
else()
    set(CPACK_GENERATOR DEB TGZ)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
    find_program(dpkg_shlibdeps dpkg-shlibdeps)
    mark_as_advanced(dpkg_shlibdeps)
    if(dpkg_shlibdeps)
        set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    endif()
endif()
include(CPack)
