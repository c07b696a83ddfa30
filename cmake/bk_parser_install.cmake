# What an installed copy consists of: the library, its public headers under their paths in this tree, the files by which
# find_package(bk_parser CONFIG) and pkg-config find it, and the documents.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/bk_parser)
# A folder of their own, because other projects have folders core/ and parser/, too.
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/bk_parser)

install(TARGETS bk_parser EXPORT bk_parser_targets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${header_dir})
foreach(floor IN LISTS bk_parser_floors)
    file(GLOB public_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${floor}/*.h)
    install(FILES ${public_headers} DESTINATION ${header_dir}/${floor})
endforeach()
install(EXPORT bk_parser_targets NAMESPACE bk_parser:: FILE bk_parser-config.cmake DESTINATION ${package_dir})

write_basic_package_version_file(${PROJECT_BINARY_DIR}/bk_parser-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/bk_parser-config-version.cmake DESTINATION ${package_dir})

# Paths in the .pc file are relative to its own folder, so that an installed copy can be moved.
set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pc_prefix ${CMAKE_INSTALL_PREFIX}/${pc_dir} ${CMAKE_INSTALL_PREFIX})
set(pc_definitions "")
if(NOT BUILD_SHARED_LIBS)
    set(pc_definitions "-DBK_PARSER_STATIC")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/bk_parser.pc.in ${PROJECT_BINARY_DIR}/bk_parser.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/bk_parser.pc DESTINATION ${pc_dir})

# The folders are the same as in the source tree, so that links between pages work.
install(FILES README.md CHANGELOG.md SECURITY.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documents)
install(DIRECTORY docs abi examples schemas syntaxes DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documents
    PATTERN CMakeLists.txt EXCLUDE
    PATTERN *.cmake EXCLUDE)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documents RENAME copyright) # the name that Debian requires
