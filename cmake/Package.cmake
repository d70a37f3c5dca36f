# A Debian package of what `cmake --install` installs: cpack in the build folder of the preset "package".

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME libwq-dev)
set(CPACK_PACKAGE_CONTACT "The libwq developers <wq@wq.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libxml2-dev")  # whose headers ours include
include(CPack)
