set(SOURCE_PATH "${CURRENT_PORT_DIR}/../../..")

vcpkg_check_features(OUT_FEATURE_OPTIONS feature_options FEATURES tools BK_PARSER_TOOLS)
vcpkg_cmake_configure(
    SOURCE_PATH "${SOURCE_PATH}"
    OPTIONS ${feature_options} -DBK_PARSER_TESTS=OFF -DBK_PARSER_EXAMPLES=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME bk_parser CONFIG_PATH lib/cmake/bk_parser)
vcpkg_fixup_pkgconfig()
if("tools" IN_LIST FEATURES)
    vcpkg_copy_tools(TOOL_NAMES bkdoc AUTO_CLEAN)
endif()
vcpkg_copy_pdbs()

file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
